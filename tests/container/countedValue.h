#pragma once

#include <string>

// A value that counts how many of its kind live and notes the order of their ends.
class countedValue
{
public:
    countedValue(int value = 0) : m_value(value) { ++Living(); }
    countedValue(const countedValue& other) : m_value(other.m_value) { ++Living(); }
    countedValue& operator=(const countedValue&) = default;
    ~countedValue()
    {
        --Living();
        Ends() += std::to_string(m_value) + " ";
    }

    int Value() const { return m_value; }

    static int& Living()
    {
        static int living = 0;
        return living;
    }
    static std::string& Ends()
    {
        static std::string ends;
        return ends;
    }

private:
    int m_value;
};
