#include "link/SerialDevice.h"

#include <QElapsedTimer>
#include <QThread>
#include <QTimer>
#include <optional>
#include <qt_windows.h>
#include <utility>

namespace ztv {

namespace {

// The system is asked for received bytes this often. The events and the timed reads of some drivers, and of
// the system's emulations, report bytes late or never.
constexpr int expectingMs = 1;
constexpr int idleMs = 20;

constexpr DWORD bufferBytes = 4096;
constexpr DWORD longestWriteMs = 2000;

class Event {
public:
    Event() : handle_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    ~Event() { CloseHandle(handle_); }
    Event(const Event &) = delete;
    Event &operator=(const Event &) = delete;
    HANDLE Handle() const { return handle_; }

private:
    HANDLE handle_;
};

std::wstring PathOf(const QString &device) {
    const bool isPath = device.startsWith(QStringLiteral("\\\\"));
    return (isPath ? device : QStringLiteral("\\\\.\\") + device).toStdWString(); // COM10 and above need it
}

class WindowsSerialDevice : public SerialDevice {
public:
    WindowsSerialDevice() {
        look_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&look_, &QTimer::timeout, &look_, [this] { Look(); });
    }
    ~WindowsSerialDevice() override { CloseDevice(); }

    LinkStatus Open(const LineSettings &settings) override;
    void Close() override { CloseDevice(); }
    bool IsOpen() const override { return handle_ != INVALID_HANDLE_VALUE; }
    void ClearInput() override;
    bool Write(const QByteArray &bytes) override;
    QByteArray Read() override { return std::exchange(input_, {}); }
    void WaitForInput(int milliseconds) override;
    void ExpectInput(bool expected) override;

private:
    // One overlapped read or write, as the system's functions take it.
    using Transfer = BOOL (*)(HANDLE, void *, DWORD, OVERLAPPED *);

    LinkStatus Configure(const LineSettings &settings);
    void CloseDevice();
    std::optional<DWORD> Run(Transfer transfer, void *bytes, DWORD size);
    bool Collect();
    void Look();

    HANDLE handle_ = INVALID_HANDLE_VALUE;
    Event done_;
    QTimer look_;
    QByteArray input_; // not yet returned by Read
};

LinkStatus WindowsSerialDevice::Open(const LineSettings &settings) {
    input_.clear();
    handle_ = CreateFileW(PathOf(settings.device).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                          OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
    if (!IsOpen()) {
        return LinkStatus::OpenFailed; // not there, or another program has it
    }
    const LinkStatus status = Configure(settings);
    if (status != LinkStatus::NoError) {
        CloseDevice();
        return status;
    }
    PurgeComm(handle_, PURGE_RXCLEAR | PURGE_TXCLEAR);
    look_.start(idleMs);
    return status;
}

// Sets one thing after the other: only then does each call report whether the device accepts it.
LinkStatus WindowsSerialDevice::Configure(const LineSettings &settings) {
    DCB control = {};
    control.DCBlength = sizeof control;
    COMMTIMEOUTS timeouts = {};
    timeouts.ReadIntervalTimeout = MAXDWORD; // with the zeros: a read returns at once with what there is
    timeouts.WriteTotalTimeoutConstant = longestWriteMs;
    SetupComm(handle_, bufferBytes, bufferBytes);
    if (GetCommState(handle_, &control) == 0) {
        return LinkStatus::OpenFailed; // no serial device
    }
    if (SetCommTimeouts(handle_, &timeouts) == 0) {
        return LinkStatus::TimeoutRefused;
    }
    control.fBinary = 1;
    control.fOutxCtsFlow = 0;
    control.fOutxDsrFlow = 0;
    control.fDsrSensitivity = 0;
    control.fOutX = 0;
    control.fInX = 0;
    control.fNull = 0;
    control.fErrorChar = 0;
    control.fAbortOnError = 0;
    control.fDtrControl = DTR_CONTROL_ENABLE; // some adapters are powered by these lines
    control.fRtsControl = RTS_CONTROL_ENABLE;
    control.BaudRate = static_cast<DWORD>(settings.bitsPerSecond);
    if (SetCommState(handle_, &control) == 0) {
        return LinkStatus::BaudRateRefused;
    }
    control.fParity = settings.parity == Parity::None ? 0 : 1;
    control.Parity = settings.parity == Parity::Odd    ? ODDPARITY
                     : settings.parity == Parity::Even ? EVENPARITY
                                                       : NOPARITY;
    if (SetCommState(handle_, &control) == 0) {
        return LinkStatus::ParityRefused;
    }
    control.StopBits = settings.stopBits == StopBits::Two ? TWOSTOPBITS : ONESTOPBIT;
    if (SetCommState(handle_, &control) == 0) {
        return LinkStatus::StopBitsRefused;
    }
    control.ByteSize = 8;
    return SetCommState(handle_, &control) == 0 ? LinkStatus::DataBitsRefused : LinkStatus::NoError;
}

void WindowsSerialDevice::CloseDevice() {
    look_.stop();
    if (IsOpen()) {
        CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE));
    }
}

void WindowsSerialDevice::ClearInput() {
    PurgeComm(handle_, PURGE_RXCLEAR);
    input_.clear();
}

bool WindowsSerialDevice::Write(const QByteArray &bytes) {
    const auto transfer = [](HANDLE handle, void *data, DWORD size, OVERLAPPED *overlapped) {
        return WriteFile(handle, data, size, nullptr, overlapped);
    };
    QByteArray copy = bytes;
    const auto size = static_cast<DWORD>(copy.size());
    return Run(transfer, copy.data(), size) == size;
}

void WindowsSerialDevice::WaitForInput(int milliseconds) {
    QElapsedTimer waited;
    waited.start();
    while (IsOpen() && Collect() && input_.isEmpty() && waited.elapsed() < milliseconds) {
        QThread::msleep(1);
    }
}

void WindowsSerialDevice::ExpectInput(bool expected) {
    if (IsOpen()) {
        look_.start(expected ? expectingMs : idleMs);
    }
}

// Returns the number of bytes transferred; none if the device failed.
std::optional<DWORD> WindowsSerialDevice::Run(Transfer transfer, void *bytes, DWORD size) {
    OVERLAPPED overlapped = {};
    overlapped.hEvent = done_.Handle();
    DWORD count = 0;
    if (transfer(handle_, bytes, size, &overlapped) == 0 && GetLastError() != ERROR_IO_PENDING) {
        return std::nullopt;
    }
    if (GetOverlappedResult(handle_, &overlapped, &count, TRUE) == 0) {
        return std::nullopt;
    }
    return count;
}

// Reads just the bytes that are there: a read that asks for more may wait forever. Returns false and reports
// a device that is gone.
bool WindowsSerialDevice::Collect() {
    const auto transfer = [](HANDLE handle, void *data, DWORD size, OVERLAPPED *overlapped) {
        return ReadFile(handle, data, size, nullptr, overlapped);
    };
    DWORD errors = 0;
    COMSTAT state = {};
    if (ClearCommError(handle_, &errors, &state) != 0) {
        if (state.cbInQue == 0) {
            return true;
        }
        QByteArray bytes(static_cast<qsizetype>(state.cbInQue), '\0');
        if (const std::optional<DWORD> count = Run(transfer, bytes.data(), state.cbInQue)) {
            input_ += bytes.first(static_cast<qsizetype>(*count));
            return true;
        }
    }
    Notify(Notice::Gone);
    return false;
}

void WindowsSerialDevice::Look() {
    const qsizetype before = input_.size();
    if (Collect() && input_.size() > before) {
        Notify(Notice::Input);
    }
}

} // namespace

std::unique_ptr<SerialDevice> NewSerialDevice() {
    return std::make_unique<WindowsSerialDevice>();
}

} // namespace ztv
