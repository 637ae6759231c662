#include "runtime/views/base/device.h"

#include <cstdlib>

#include "platform/ui/application.h"

namespace kes::device {

namespace {

Text& version() {
  static Text text("11.0");
  return text;
}

}  // namespace

ui::Rect screenBounds() {
  auto* app = ui::Application::current();
  return app ? app->screenBounds() : ui::Rect{};
}

double screenScale() {
  auto* app = ui::Application::current();
  return app ? app->screenScale() : 1;
}

double textHeight(double designed) { return ui::textHeight(designed); }

ui::Rect statusBarFrame() {
  auto* app = ui::Application::current();
  return app ? app->statusBarFrame() : ui::Rect{};
}

ui::Rect rootViewBounds() {
  auto* app = ui::Application::current();
  if (!app) return {};
  const auto windows = app->windows();
  if (windows.empty()) return {};
  auto* root = windows.front()->rootViewController();
  return root ? root->view().bounds() : windows.front()->bounds();
}

ui::Rect windowBounds() {
  auto* app = ui::Application::current();
  const auto windows = app ? app->windows() : std::vector<ui::Ref<ui::Window>>();
  return windows.empty() ? ui::Rect{} : windows.front()->bounds();
}

Text systemVersion() { return version(); }

float systemVersionNumber() { return std::strtof(version().str().c_str(), nullptr); }

void setSystemVersion(Text text) { version() = std::move(text); }

}  // namespace kes::device
