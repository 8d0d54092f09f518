#pragma once

#include "tessaly/tessaly_export.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <memory>
#include <optional>

namespace tessaly {

enum class RegistryRoot { ClassesRoot, CurrentUser, LocalMachine };

// A raw registry value: its type code and its bytes, as a registry query hands them back.
struct TESSALY_EXPORT RegistryValue
{
    static constexpr quint32 TextType = 1;   // zero-terminated 8-bit text
    static constexpr quint32 NumberType = 4; // 32-bit number, little-endian

    quint32 type = 0;
    QByteArray data;

    static RegistryValue fromText(const QString &text);
    static RegistryValue fromNumber(quint32 number);
};

// The host's typed key/value store standing in for the system registry: keys are paths under a
// root, each holding named values. File-backed as JSON when the host gives it a file.
class TESSALY_EXPORT RegistryStore
{
public:
    RegistryStore() = default;
    virtual ~RegistryStore();

    virtual bool hasKey(RegistryRoot root, const QString &path) const;
    virtual std::optional<RegistryValue> queryValue(RegistryRoot root, const QString &path,
                                                    const QString &valueName) const;
    void setValue(RegistryRoot root, const QString &path, const QString &valueName,
                  const RegistryValue &value);
    bool removeKey(RegistryRoot root, const QString &path);

    // Raise tessaly::Error naming the file when it cannot be read or written.
    void load(const QString &fileName);
    void save(const QString &fileName) const;

    // The store the host supplies to the whole process; by default the user's own file,
    // $XDG_CONFIG_HOME/veldra/registry.json, read on first use.
    static std::shared_ptr<RegistryStore> instance();
    static void setInstance(std::shared_ptr<RegistryStore> store);
    static QString defaultFileName();

private:
    static QString keyName(RegistryRoot root, const QString &path);

    QMap<QString, QMap<QString, RegistryValue>> m_keys;
};

} // namespace tessaly
