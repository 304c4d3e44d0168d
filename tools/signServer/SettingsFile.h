#pragma once
// server.ini, read when it changed. Any thread.
#include "tools/signServer/FileMark.h"
#include "tools/signServer/KeyRows.h"
#include <QMutex>
#include <QSet>
#include <memory>

class SignFolder;

// The file as it was at some moment.
class Settings
{
public:
    explicit Settings(const QByteArray& text);

    // Null without one.
    QByteArray Value(const char* section, const char* key) const;
    // Of the section "displays".
    const KeyRowList& Displays() const { return m_displays; }
    bool Admits(const QByteArray& name, const QByteArray& hardwareKey) const;

private:
    const KeySections m_sections;
    const KeyRowList m_displays;
    QSet<QPair<QByteArray, QByteArray>> m_admitted; // name and key in small letters, or "*"
};

class SettingsFile
{
public:
    explicit SettingsFile(const SignFolder& folder) : m_folder(folder) {}

    // Never null.
    std::shared_ptr<const Settings> Now() const;

private:
    const SignFolder& m_folder;
    mutable QMutex m_lock;
    mutable FileMark m_mark;
    mutable bool m_settled = false;
    mutable std::shared_ptr<const Settings> m_settings;
};
