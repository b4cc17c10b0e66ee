#pragma once

#include "desktop/RegistryReader.h"
#include "support/UserDialogs.h"

#include <QString>
#include <QStringList>
#include <functional>

// The system's own tool that tells about the computer.
namespace SystemInformation {

// Starts a program with a normal window. False when it can't be started.
using Starter = std::function<bool(const QString &program, const QStringList &arguments)>;

// Starts the program as one of its own, that lives on.
bool StartDetached(const QString &program, const QStringList &arguments);

// Reads a value of the registry as text into `KeyVal`: a string, or a double word as a signed number. A value
// of another type leaves `KeyVal` as it is. False, and an empty text, when there is no value to read.
bool GetKeyValue(RegistryReader &registry, RootKey KeyRoot, const QString &KeyName, const QString &SubKeyRef,
                 QString &KeyVal);

// Starts the tool that the registry names. Tells the user when there is none.
void StartSysInfo(RegistryReader &registry, const Starter &start, UserDialogs &dialogs);

// The same where there is no registry: the first of the known tools that starts.
void StartSysInfo(const Starter &start, UserDialogs &dialogs);

} // namespace SystemInformation
