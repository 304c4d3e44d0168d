#pragma once
// How many bits of pictures the network bears, by what the other side tells of its loss. One thread.
class pictureRate
{
public:
    enum : int { LEAST_KBIT = 64, USUAL_KBIT = 1000, MOST_KBIT = 4000 };

    // most: kbit/s; 0: the usual ones.
    void setMost(int most);
    // The other side has told again; 0 to 100. True when the rate is another one.
    bool told(int lossInPercent);
    int kbit() const { return m_nKbit; }

private:
    int m_nMost = USUAL_KBIT;
    int m_nKbit = USUAL_KBIT;
};
