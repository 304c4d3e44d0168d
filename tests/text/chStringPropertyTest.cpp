#include "tests/text/errorLines.h"
#include "tests/text/textBlock.h"

#include <random>
#include <vector>

// Strings that share blocks in all ways, beside std::string that share nothing: after every random
// operation both say the same.

namespace {

const char* const alphabet[] = {
    "a", "Z", "0", " ", ".", "%", "\xC3\xA4", "\xD0\xAF", "\xE2\x82\xAC", "\xE6\x97\xA5", "\xF0\x9F\x98\x80"};

bool isTrail(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

size_t boundaryBefore(const std::string& text, size_t index)
{
    while (index > 0 && index < text.size() && isTrail(text[index]))
        --index;
    return index;
}

size_t boundaryAfter(const std::string& text, size_t index)
{
    while (index < text.size() && isTrail(text[index]))
        ++index;
    return index;
}

class StringProperty : public testing::TestWithParam<unsigned>
{
protected:
    static constexpr size_t POOL = 6;

    ~StringProperty() override { EXPECT_EQ(errors.Take(), ""); }

    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    size_t Pick() { return static_cast<size_t>(Below(POOL)); }

    std::string RandomText()
    {
        std::string text;
        for (int letters = Below(4) ? Below(12) : Below(60); letters > 0; --letters)
            text += alphabet[Below(static_cast<int>(std::size(alphabet)))];
        return text;
    }

    void Assign(size_t i)
    {
        const std::string text = RandomText();
        const int count = Below(2) ? -1 : Below(20);
        ours[i].CopyTextFrom(text.c_str(), count);
        model[i] = text.substr(0, count < 0 ? text.size() : boundaryBefore(text, static_cast<size_t>(count)));
    }

    void Append(size_t i)
    {
        const std::string text = RandomText();
        if (Below(2))
            ours[i] += text.c_str();
        else
            ours[i] += chString(text.c_str());
        model[i] += text;
    }

    void Remove(size_t i)
    {
        const size_t at = boundaryBefore(model[i], static_cast<size_t>(Below(ours[i].GetLength() + 1)));
        const int count = Below(10);
        ours[i].RemoveAt(static_cast<int>(at), count);
        const size_t end = std::min(model[i].size(), at + static_cast<size_t>(count));
        model[i].erase(at, (count ? boundaryAfter(model[i], end) : at) - at);
    }

    void Cut(size_t i)
    {
        const int count = Below(8);
        ours[i].ReverseDeleteLetters(count);
        const size_t size = model[i].size(), cut = std::min(size, static_cast<size_t>(count));
        model[i].resize(boundaryBefore(model[i], size - cut));
    }

    void Mid(size_t to, size_t from)
    {
        const int start = Below(20), count = Below(3) ? Below(20) : -1;
        ours[to] = ours[from].MidLetters(start, count);
        const std::string text = model[from];
        const size_t begin = boundaryAfter(text, std::min(text.size(), static_cast<size_t>(start)));
        const size_t end = count < 0 ? text.size() : boundaryBefore(text, static_cast<size_t>(start + count));
        model[to] = begin < end ? text.substr(begin, std::min(end, text.size()) - begin) : "";
    }

    void Right(size_t to, size_t from)
    {
        const int count = Below(20);
        ours[to] = ours[from].RightLetters(count);
        const std::string text = model[from];
        const size_t cut = text.size() - std::min(text.size(), static_cast<size_t>(count));
        model[to] = text.substr(boundaryAfter(text, cut));
    }

    void Print(size_t to, size_t from)
    {
        const int number = Below(1000000);
        ours[to].Format("%s:%d:%s", ours[to].GetText(), number, ours[from].GetText());
        model[to] = model[to] + ":" + std::to_string(number) + ":" + model[from];
        if (model[to].size() > 2000) {
            ours[to] = "";
            model[to].clear();
        }
    }

    void WriteFirstByte(size_t i)
    {
        if (model[i].empty() || model[i][0] < 0)
            return;
        ours[i].PrepareTextBuffer(-1)->GetText()[0] = '#';
        model[i][0] = '#';
    }

    void ForgetLength(size_t i)
    {
        if (ours[i].GetStringData())
            ours[i].GetStringData()->m_nDataLength = -1;
    }

    void Step()
    {
        const size_t i = Pick(), j = Pick();
        switch (Below(13)) {
        case 0:
            Assign(i);
            break;
        case 1:
            Append(i);
            break;
        case 2:
            Remove(i);
            break;
        case 3:
            Cut(i);
            break;
        case 4:
            Mid(i, j);
            break;
        case 5:
            Right(i, j);
            break;
        case 6:
            Print(i, j);
            break;
        case 7:
            WriteFirstByte(i);
            break;
        case 8:
            ForgetLength(i);
            break;
        case 9:
            ours[i] = ours[i] + ours[j];
            model[i] += model[j];
            break;
        case 10:
            if (i != j) {
                ours[i] = std::move(ours[j]);
                model[i] = model[j];
                model[j].clear();
            }
            break;
        default:
            ours[i] = ours[j];
            model[i] = model[j];
            break;
        }
        if (model[i].size() > 4000)
            ours[i] = (model[i] = "").c_str();
    }

    void Compare(int step)
    {
        for (size_t i = 0; i < POOL; ++i) {
            ASSERT_EQ(std::string(ours[i].GetText()), model[i]) << "step " << step;
            ASSERT_EQ(ours[i].GetLength(), static_cast<int>(model[i].size())) << "step " << step;
            ASSERT_TRUE(isSound(ours[i])) << "step " << step;
            for (size_t j = 0; j < POOL; ++j) {
                ASSERT_EQ(ours[i] == ours[j], model[i] == model[j]);
                ASSERT_EQ(ours[i] > ours[j], model[i] > model[j]);
            }
        }
    }

    errorLines errors;
    std::vector<chString> ours{POOL};
    std::vector<std::string> model{POOL};

private:
    std::mt19937 m_random{GetParam()};
};

} // namespace

TEST_P(StringProperty, SaysTheSameAsAStandardStringAfterAnyOperations)
{
    for (int step = 0; step < 3000 && !HasFatalFailure(); ++step) {
        Step();
        Compare(step);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StringProperty, testing::Values(1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u));
