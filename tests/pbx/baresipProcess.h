#pragma once
// A phone that nobody here wrote, without sound devices, driven over its control port.
#include "tests/kit/plain/sideProgram.h"
#include <QByteArray>
#include <QTcpSocket>
#include <cstdint>

class BaresipProcess
{
public:
    // Registers at that port. Fails the test when it does not come up.
    void start(const QByteArray& user, uint32_t server, const QByteArray& password,
               bool answersItself = false);
    // False when it does not tell that event in time; its text holds the word.
    bool tells(const QByteArray& event, int ms = 15000);
    // The same for what it prints, from its start on.
    bool prints(const QByteArray& text, int ms = 15000);
    void command(const QByteArray& name, const QByteArray& parameters = {});
    QByteArray output();

private:
    kit::SideProgram m_program;
    QTcpSocket m_control;
    QByteArray m_told;
};
