#pragma once
// A disk that hangs, where and as long as a test says.
#include <functional>
#include <string>

namespace kit {

// While it lives, whoever opens or removes what is called so waits for release(). One at a time; main thread.
class HeldName
{
public:
    // The end of a name, in whatever folder.
    explicit HeldName(const std::string& end);
    // Releases, and waits until nobody is inside.
    ~HeldName();
    HeldName(const HeldName&) = delete;
    HeldName& operator=(const HeldName&) = delete;

    void release();
    // Threads that wait now.
    int waiting() const;
};

// Of all folders that this process has listed.
int entriesRead();
int foldersClosed();

// Whether call holds its thread up no longer than a person overlooks. A busy machine has some tries, each
// after prepare.
bool isQuick(const std::function<void()>& call, const std::function<void()>& prepare = nullptr);

} // namespace kit
