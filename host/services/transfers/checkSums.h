#pragma once
// MD5 sums of what is coming, on a thread of their own: counting takes as long as receiving.
#include <QCryptographicHash>
#include <QObject>
#include <QSemaphore>
#include <QThread>
#include <functional>
#include <memory>

class checkSums
{
public:
    enum : int { MOST_BYTES = 4 << 20 }; // that are still to be counted

    using Sum = std::shared_ptr<QCryptographicHash>;
    using ToldCall = std::function<void(const QByteArray& sum)>;

    checkSums();
    // What is still to be counted is dropped.
    ~checkSums();

    // All from one thread, the one that made this.
    static Sum begin() { return std::make_shared<QCryptographicHash>(QCryptographicHash::Md5); }
    // Waits while there is too much to count. block: at most MOST_BYTES.
    void add(const Sum& sum, const QByteArray& block);
    // Adds the last block, which may be empty, and tells the sum as text: on the thread of the sums, since
    // going round by another would wake that one for nothing. Nothing may be added any more.
    void finish(const Sum& sum, const QByteArray& last, ToldCall told);

private:
    QThread m_thread;
    QObject m_worker; // lives on that thread
    QSemaphore m_room{MOST_BYTES};
};
