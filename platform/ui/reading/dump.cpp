#include "platform/ui/reading/dump.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include "platform/ui/application.h"
#include "platform/ui/controls/map_view.h"
#include "platform/ui/overlays/dialog.h"
#include "platform/ui/tree/layer_view.h"

namespace ui {

namespace {

// At most so many decimals, none that say nothing.
std::string number(double v, int decimals = 2) {
  const double unit = std::pow(10, decimals);
  v = std::round(v * unit) / unit;
  if (v == 0) v = 0;  // no "-0"
  char text[340];     // the longest double
  std::snprintf(text, sizeof text, "%.*f", decimals, v);
  std::string s = text;
  while (s.back() == '0') s.pop_back();
  if (s.back() == '.') s.pop_back();
  return s;
}

std::string line(const Visible& seen, int depth) {
  const View& v = seen.view;
  std::string out(static_cast<std::size_t>(depth) * 2, ' ');
  out += v.className();
  if (!v.name().empty()) out += " #" + v.name();
  out += ' ' + number(seen.frame.x) + ',' + number(seen.frame.y) + ' ' + number(seen.frame.width) +
         'x' + number(seen.frame.height);
  const auto text = v.displayText();
  if (!text.empty()) out += ' ' + quoted(text);
  const auto name = v.accessibleName();
  if (!name.empty() && name != text) out += " name=" + quoted(name);
  const auto value = v.accessibleValue();
  if (!value.empty() && value != text) out += " [" + value + ']';
  if (!v.enabled()) out += " [disabled]";
  if (v.isFocused()) out += " [focused]";
  return out + '\n';
}

std::string markerLine(const MapMarker& marker, int depth) {
  std::string out(static_cast<std::size_t>(depth) * 2, ' ');
  const GeoPoint at = marker.position();
  out += "MapMarker " + quoted(marker.title()) + " @" + number(at.latitude, 6) + ',' +
         number(at.longitude, 6);
  if (marker.isFocused()) out += " [focused]";
  return out + '\n';
}

}  // namespace

std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        out += c;
    }
  }
  return out + '"';
}

std::string dump(const Window& window) {
  auto* app = Application::current();
  auto& overlay = const_cast<Window&>(window).overlay();
  const View* progress = app ? app->hud().progressView() : nullptr;
  const View* toast = app ? app->hud().toastView() : nullptr;
  std::string page, progressPart, toastPart, dialogPart;
  std::string* part = &page;
  int base = 0;
  const View* layer = nullptr;  // in front of the page, and being told
  int layerDepth = 0;
  window.visitVisible([&](const Visible& seen) {
    if (layer && seen.depth <= layerDepth) {
      layer = nullptr;
      part = &page;
      base = 0;
    }
    if (dynamic_cast<const LayerView*>(&seen.view)) return true;
    if (seen.view.parent() == &overlay || Hud::isLayer(seen.view)) {
      layer = &seen.view;
      layerDepth = seen.depth;
      base = seen.depth - 1;
      if (&seen.view == progress) {
        part = &progressPart;
        *part += "overlay " + quoted(app->hud().progressText()) + '\n';
      } else if (&seen.view == toast) {
        part = &toastPart;
        *part += "toast " + quoted(app->hud().toastText()) + '\n';
      } else {
        for (const auto& dialog : app ? app->dialogs() : std::vector<Ref<Dialog>>{})
          if (dialog->layer() == &seen.view) {
            part = &dialogPart;
            *part += "dialog " + quoted(dialog->title) + '\n';
          }
        if (part == &page) return false;  // on its way out
      }
    }
    // Markers are written with their map, seen or not.
    if (dynamic_cast<const MapMarker*>(&seen.view)) return false;
    if (dynamic_cast<const MapGround*>(&seen.view)) return true;
    *part += line(seen, seen.depth - base);
    if (const auto* map = dynamic_cast<const MapView*>(&seen.view))
      for (const auto& marker : map->markers()) *part += markerLine(*marker, seen.depth - base + 1);
    return true;
  });
  return page + progressPart + toastPart + dialogPart;
}

}  // namespace ui
