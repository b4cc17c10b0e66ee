#pragma once

#include "desktop/RegistryReader.h"
#include "support/UserDialogs.h"

#include <QString>
#include <QStringList>
#include <functional>

namespace ztv {

// Starts the system's own tool that shows information about the computer.
namespace SystemInformation {

// Starts a program with a normal window. Returns false if it can't be started.
using Starter = std::function<bool(const QString &program, const QStringList &arguments)>;

// Starts the program as a separate process, which outlives this one.
bool StartDetached(const QString &program, const QStringList &arguments);

// Reads a value of the registry as text into `KeyVal`: a string, or a double word as a signed number. A value
// of another type leaves `KeyVal` unchanged. Returns false and clears `KeyVal` if there is no value to read.
bool GetKeyValue(RegistryReader &registry, RootKey KeyRoot, const QString &KeyName, const QString &SubKeyRef,
                 QString &KeyVal);

// Starts the tool that the registry names. Shows the user a message if none can be started.
void StartSysInfo(RegistryReader &registry, const Starter &start, UserDialogs &dialogs);

// The same for systems without a registry: starts the first of the known tools that can be started.
void StartSysInfo(const Starter &start, UserDialogs &dialogs);

} // namespace SystemInformation

} // namespace ztv
