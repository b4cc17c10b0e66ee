#include "help/HtmlHelpEngine.h"

#include <qt_windows.h>

namespace ztv {

namespace {

using HtmlHelpFunction = HWND(WINAPI *)(HWND, LPCSTR, UINT, DWORD_PTR);

// Loads the library once and keeps it loaded, because its windows outlive the call.
HtmlHelpFunction Function() {
    static const auto function = [] {
        const HMODULE library = LoadLibraryA("hhctrl.ocx");
        return library == nullptr ? nullptr
                                  : reinterpret_cast<HtmlHelpFunction>(
                                        reinterpret_cast<void *>(GetProcAddress(library, "HtmlHelpA")));
    }();
    return function;
}

} // namespace

bool HtmlHelpEngine::IsThere() {
    return Function() != nullptr;
}

void HtmlHelpEngine::HtmlHelp(WindowHandle caller, const QString &file, HelpCommand command,
                              const HelpData &data) {
    if (!IsThere()) {
        return;
    }
    const QByteArray text = data.index() == 1 ? std::get<QString>(data).toLocal8Bit() : QByteArray();
    const auto argument = data.index() == 1 ? reinterpret_cast<DWORD_PTR>(text.constData())
                                            : static_cast<DWORD_PTR>(std::get<std::int32_t>(data));
    Function()(reinterpret_cast<HWND>(caller), file.toLocal8Bit().constData(), static_cast<UINT>(command),
               argument);
}

} // namespace ztv
