#pragma once

#include <QObject>
#include <functional>
#include <span>
#include <vector>

#include "app/form1.h"

class QWidget;

namespace tonadex::shell {

// A control of the window model and the object that draws it: a widget, for a timer a QTimer.
// Scratch storage has none.
struct BoundControl {
  const app::ControlInfo* info;
  QObject* object;
  QWidget* widget;  // `object` as a widget, nullptr for a timer
};

// Binds each control of the model to one widget of the same name: draws it and reads it back by its
// look, without knowing what it means.
class Binding {
 public:
  using Handler = std::function<void()>;
  // Calls a handler of the model: copies the user's edits in, runs it, draws.
  using Dispatch = std::function<void(const Handler&)>;

  // Makes the widgets as children of `parent`, connected to the handlers of their rows.
  Binding(app::Form1& form, QWidget* parent, const Dispatch& dispatch);

  std::span<const BoundControl> Controls() const { return bound_; }
  QWidget* Widget(app::Control app::Form1::*member) const;
  QObject* Object(app::Control app::Form1::*member) const;

  // Copies what the user typed and chose into the model.
  void CopyIn();
  // Updates the widgets that differ from the model.
  void Draw();

 private:
  void Connect(const BoundControl& bound, const Dispatch& dispatch);
  void ConnectMenu(const BoundControl& bound, const Dispatch& dispatch);

  app::Form1& form_;
  std::vector<BoundControl> bound_;
  bool drawing_ = false;  // Draw is running: ignore the signals that it causes
};

}  // namespace tonadex::shell
