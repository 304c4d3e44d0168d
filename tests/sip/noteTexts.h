#pragma once
// What servers write of extensions and lists of them.
#include <QByteArray>

// Of the lists that list() begins.
inline constexpr const char* kListContent =
    "multipart/related;type=\"application/rlmi+xml\";start=\"<root>\";boundary=\"b\"";
inline constexpr const char* kListEnd = "--b--\r\n";

// attributes, content: further ones.
QByteArray dialog(const QByteArray& id, const QByteArray& state, const QByteArray& direction,
                  const QByteArray& attributes = {}, const QByteArray& content = {});
QByteArray dialogs(uint32_t version, const QByteArray& state, const QByteArray& all = {});
// part: of its state; empty: none.
QByteArray member(const QByteArray& uri, const QByteArray& name, const QByteArray& instance = {},
                  const QByteArray& part = {});
// Up to its first part.
QByteArray list(uint32_t version, bool isWhole, const QByteArray& members);
QByteArray part(const QByteArray& id, const QByteArray& document);
