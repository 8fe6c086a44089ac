#include "app/held_escape.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>

namespace graphize {

namespace {

constexpr xcb_keysym_t kEscapeKeysym = 0xff1b;

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};

xcb_keycode_t FindEscape(xcb_connection_t* connection) {
  const xcb_setup_t* setup = xcb_get_setup(connection);
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, FreeReply> reply(
      xcb_get_keyboard_mapping_reply(
          connection, xcb_get_keyboard_mapping(connection, setup->min_keycode, count), nullptr));
  if (!reply || reply->keysyms_per_keycode == 0) return 0;
  const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
  const int length = xcb_get_keyboard_mapping_keysyms_length(reply.get());
  for (int i = 0; i < length; ++i)
    if (symbols[i] == kEscapeKeysym)
      return static_cast<xcb_keycode_t>(setup->min_keycode + i / reply->keysyms_per_keycode);
  return 0;
}

}  // namespace

HeldEscape::HeldEscape(QObject* parent) : QObject(parent) {}

bool HeldEscape::IsHeld() {
  if (sinceAsked_.isValid() && sinceAsked_.elapsed() < 2) return held_;
  sinceAsked_.start();
  held_ = AskServer() || remembered_;
  return held_;
}

bool HeldEscape::AskServer() {
  if (!looked_) {
    looked_ = true;
    // Other platforms hand out an interface whose connection is not to be touched.
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
      if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        connection_ = x11->connection();
        keycode_ = FindEscape(connection_);
      }
    }
  }
  if (connection_ == nullptr || keycode_ == 0) return false;
  const std::unique_ptr<xcb_query_keymap_reply_t, FreeReply> reply(
      xcb_query_keymap_reply(connection_, xcb_query_keymap(connection_), nullptr));
  return reply && (reply->keys[keycode_ / 8] >> (keycode_ % 8) & 1) != 0;
}

}  // namespace graphize
