#include "launch/addressglobals.h"

#include "config/settings.h"
#include "core/cverror.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace AddressGlobals {

namespace {
LaunchContext s_context;
} // namespace

LaunchContext &context()
{
    return s_context;
}

qint16 &LaunchMode = s_context.mode;
qint32 &CurrentAddressID = s_context.currentAddressId;
bool &LaunchModal = s_context.modal;
bool &LaunchForWagebook = s_context.forWagebook;
QString &helpModuleName = s_context.helpModuleName;
qint32 &helpContextId = s_context.helpContextId;
QString &helpFilePath = s_context.helpFilePath;

quint32 wagebookMessageId = 0;
int wagebookReplyTimeoutMs = DefaultWagebookReplyTimeoutMs;

namespace {

// "ActiveX component can't create object": the nearest the platform has to a window
// class that is not there.
constexpr int CannotCreateObject = 429;

std::unique_ptr<Settings> s_settings;
std::unique_ptr<AddressWindow> s_mainWindow;

// Made on first use: the public library registers its window while it is being loaded,
// which may come before this file's own static objects are constructed.
AddressWindowFactory &windowFactory()
{
    static AddressWindowFactory factory;
    return factory;
}

// A window must go before the application object does; the post routines run first thing
// in the application's destructor.
void releaseAtExit()
{
    s_mainWindow.reset();
}

} // namespace

bool hasSettings()
{
    return s_settings != nullptr;
}

Settings &settings()
{
    if (!s_settings)
        s_settings = std::make_unique<Settings>();
    return *s_settings;
}

void setWindowFactory(AddressWindowFactory factory)
{
    windowFactory() = std::move(factory);
}
bool hasWindowFactory()
{
    return bool(windowFactory());
}
bool hasMainWindow()
{
    return s_mainWindow != nullptr;
}

AddressWindow &mainWindow()
{
    if (!s_mainWindow) {
        if (!windowFactory())
            throw CvError(CannotCreateObject, "AddressGlobals",
                          "The address book window is not available in this build");
        s_mainWindow = windowFactory()();
        if (!s_mainWindow)
            throw CvError(CannotCreateObject, "AddressGlobals",
                          "The address book window could not be created");
        static bool postRoutineAdded = false;
        if (!postRoutineAdded && QCoreApplication::instance()) {
            qAddPostRoutine(releaseAtExit);
            postRoutineAdded = true;
        }
    }
    return *s_mainWindow;
}

void releaseMainWindow()
{
    s_mainWindow.reset();
}

void reset()
{
    releaseMainWindow();
    windowFactory() = nullptr;
    s_settings.reset();
    s_context = LaunchContext();
    wagebookMessageId = 0;
    wagebookReplyTimeoutMs = DefaultWagebookReplyTimeoutMs;
}

} // namespace AddressGlobals

void setApplicationTitle(const QString &title)
{
    QGuiApplication::setApplicationDisplayName(title);
}
