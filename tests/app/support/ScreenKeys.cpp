// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/app/support/ScreenKeys.h"

#include <QStringList>

#include <vector>

// After the toolkit's headers: this one defines their words as macros.
#include <X11/Xatom.h>
#include <X11/Xlib.h>

struct ScreenKeys::Display
{
    ::Display* connection = XOpenDisplay(nullptr);

    Atom atom(const char* name) const { return XInternAtom(connection, name, False); }

    std::vector<unsigned char> property(Window window, const char* name) const
    {
        Atom type = None;
        int format = 0;
        unsigned long count = 0, left = 0;
        unsigned char* data = nullptr;
        if (XGetWindowProperty(connection, window, atom(name), 0, 1024, False, AnyPropertyType, &type,
                               &format, &count, &left, &data) != Success ||
            !data)
            return {};
        const std::size_t bytes =
            count * (format == 32 ? sizeof(long) : static_cast<std::size_t>(format) / 8);
        std::vector<unsigned char> result(data, data + bytes);
        XFree(data);
        return result;
    }

    bool belongsTo(Window window, qint64 process) const
    {
        const std::vector<unsigned char> bytes = property(window, "_NET_WM_PID");
        return bytes.size() == sizeof(long) && *reinterpret_cast<const long*>(bytes.data()) == process;
    }

    QString title(Window window) const
    {
        const std::vector<unsigned char> bytes = property(window, "_NET_WM_NAME");
        return QString::fromUtf8(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
    }

    bool shown(Window window) const
    {
        XWindowAttributes attributes;
        return XGetWindowAttributes(connection, window, &attributes) && attributes.map_state == IsViewable &&
               !attributes.override_redirect;
    }

    std::vector<Window> windows(qint64 process) const
    {
        Window root = 0, parent = 0;
        Window* children = nullptr;
        unsigned int count = 0;
        std::vector<Window> found;
        if (!XQueryTree(connection, DefaultRootWindow(connection), &root, &parent, &children, &count))
            return found;
        for (unsigned int i = 0; i < count; ++i)
            if (belongsTo(children[i], process) && shown(children[i])) found.push_back(children[i]);
        if (children) XFree(children);
        return found;
    }

    std::optional<Window> find(qint64 process, const QString& wanted) const
    {
        for (const Window window : windows(process))
            if (title(window) == wanted) return window;
        return std::nullopt;
    }
};

ScreenKeys::ScreenKeys()
    : m_display(std::make_unique<Display>())
{
    if (!m_display->connection) qFatal("no X display");
    // Windows of another process go whenever they like.
    XSetErrorHandler([](::Display*, XErrorEvent*) { return 0; });
}

ScreenKeys::~ScreenKeys()
{
    XCloseDisplay(m_display->connection);
}

QStringList ScreenKeys::titles(qint64 process) const
{
    QStringList titles;
    for (const Window window : m_display->windows(process))
        titles << m_display->title(window);
    return titles;
}

void ScreenKeys::press(qint64 process, const QString& title, unsigned long key, bool control) const
{
    const std::optional<Window> window = m_display->find(process, title);
    if (!window) return;
    ::Display* connection = m_display->connection;
    XSetInputFocus(connection, *window, RevertToParent, CurrentTime);
    XKeyEvent event{};
    event.display = connection;
    event.window = *window;
    event.root = DefaultRootWindow(connection);
    event.time = CurrentTime;
    event.same_screen = True;
    event.keycode = XKeysymToKeycode(connection, key);
    event.state = control ? ControlMask : 0;
    for (const int type : {KeyPress, KeyRelease}) {
        event.type = type;
        XSendEvent(connection, *window, False, NoEventMask, reinterpret_cast<XEvent*>(&event));
    }
    XSync(connection, False);
}

void ScreenKeys::close(qint64 process, const QString& title) const
{
    const std::optional<Window> window = m_display->find(process, title);
    if (!window) return;
    XClientMessageEvent event{};
    event.type = ClientMessage;
    event.window = *window;
    event.message_type = m_display->atom("WM_PROTOCOLS");
    event.format = 32;
    event.data.l[0] = static_cast<long>(m_display->atom("WM_DELETE_WINDOW"));
    event.data.l[1] = CurrentTime;
    XSendEvent(m_display->connection, *window, False, NoEventMask, reinterpret_cast<XEvent*>(&event));
    XSync(m_display->connection, False);
}
