#pragma once
// The one window of a class that is there. User-interface thread.

template <class T>
class LiveInstance
{
public:
    // The one that was made last; null when it is gone, or forgotten.
    static T* Instance() { return static_cast<T*>(s_pInstance); }
    static void ForgetInstance() { s_pInstance = nullptr; }

protected:
    LiveInstance() { s_pInstance = this; }
    ~LiveInstance()
    {
        if (s_pInstance == this)
            s_pInstance = nullptr;
    }

private:
    static inline LiveInstance* s_pInstance = nullptr;
};
