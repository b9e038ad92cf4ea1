// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/XcbConnection.h"

#include <QTest>
#include <QWidget>

// Another program that drags onto a window, with its own connection. It answers when the test lets it.
class DropSource {
public:
    static constexpr int kPatience = 20'000; // milliseconds

    explicit DropSource(const QByteArray &offered = "text/uri-list")
        : xcb(XcbConnection::open())
        , type(xcb->atom(offered))
        , window(xcb_generate_id(xcb->get()))
    {
        xcb_create_window(xcb->get(), XCB_COPY_FROM_PARENT, window, xcb->root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(xcb->get(), window, xcb->atom("XdndSelection"), XCB_CURRENT_TIME);
        xcb->flush();
        subscription = xcb->listen([this](const xcb_generic_event_t &event) { handle(event); });
    }

    ~DropSource() { xcb_destroy_window(xcb->get(), window); }
    DropSource(const DropSource &) = delete;
    DropSource &operator=(const DropSource &) = delete;

    void enter(const QWidget &target) { send(target, "XdndEnter", 5u << 24, type, 0, 0); }
    void move(const QWidget &target)
    {
        send(target, "XdndPosition", 0, 50u << 16 | 50u, XCB_CURRENT_TIME, xcb->atom("XdndActionCopy"));
    }
    void leave(const QWidget &target) { send(target, "XdndLeave", 0, 0, 0, 0); }
    void drop(const QWidget &target) { send(target, "XdndDrop", 0, XCB_CURRENT_TIME, 0, 0); }
    void drag(const QWidget &target)
    {
        enter(target);
        move(target);
        drop(target);
    }

    void answer(const QByteArray &data)
    {
        put(type, data);
        notify(request.property);
    }
    void refuse() { notify(XCB_ATOM_NONE); }
    void beginPieces()
    {
        constexpr quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(xcb->get(), request.requestor, XCB_CW_EVENT_MASK, &events);
        constexpr quint32 size = 1;
        xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, xcb->atom("INCR"),
                            32, 1, &size);
        notify(request.property);
    }
    void put(xcb_atom_t as, const QByteArray &data)
    {
        xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, as, 8,
                            quint32(data.size()), data.constData());
        xcb->flush();
    }
    // Each piece is sent after the previous one has been deleted.
    void putNext(const QByteArray &data)
    {
        const int before = taken;
        QTRY_VERIFY_WITH_TIMEOUT(deletions > before, kPatience);
        ++taken;
        put(type, data);
    }

    bool isAsked() const { return asks > 0; }

    std::shared_ptr<XcbConnection> xcb;
    xcb_atom_t type;
    xcb_window_t window;
    xcb_selection_request_event_t request{};
    int asks = 0;
    QList<bool> finished; // whether each drop was accepted
    int deletions = 0;
    int taken = 0;

private:
    void handle(const xcb_generic_event_t &event)
    {
        const int kind = event.response_type & 0x7f;
        if (kind == XCB_SELECTION_REQUEST) {
            request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
            ++asks;
        } else if (kind == XCB_CLIENT_MESSAGE) {
            const auto &message = reinterpret_cast<const xcb_client_message_event_t &>(event);
            if (message.type == xcb->atom("XdndFinished"))
                finished.append((message.data.data32[1] & 1) != 0);
        } else if (kind == XCB_PROPERTY_NOTIFY) {
            const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
            if (change.state == XCB_PROPERTY_DELETE && change.atom == request.property)
                ++deletions;
        }
    }

    void notify(xcb_atom_t property)
    {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.time = request.time;
        event.requestor = request.requestor;
        event.selection = request.selection;
        event.target = request.target;
        event.property = property;
        xcb_send_event(xcb->get(), 0, request.requestor, 0, reinterpret_cast<const char *>(&event));
        xcb->flush();
    }

    void send(const QWidget &target, const char *name, quint32 a, quint32 b, quint32 c, quint32 d)
    {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = xcb_window_t(target.winId());
        message.type = xcb->atom(name);
        message.data.data32[0] = window;
        message.data.data32[1] = a;
        message.data.data32[2] = b;
        message.data.data32[3] = c;
        message.data.data32[4] = d;
        xcb_send_event(xcb->get(), 0, message.window, 0, reinterpret_cast<const char *>(&message));
        xcb->flush();
    }

    XcbConnection::Subscription subscription;
};
