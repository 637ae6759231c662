// What a long list costs: measuring its texts, beside shaping them by HarfBuzz and breaking
// them by ICU alone; and the processor time of each frame while ten thousand rows scroll,
// drawn by the software renderer at two pixels a point.
#include <benchmark/benchmark.h>
#include <hb.h>
#include <time.h>
#include <unicode/brkiter.h>

#include <QAccessible>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QRawFont>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <cmath>

#include "bench_world.h"
#include "platform/qt/drawing/fonts.h"
#include "platform/qt/qt_loop.h"

namespace {

using namespace bench;

World* current = nullptr;

constexpr double kWidth = 365;

void measuredByTheHouse(benchmark::State& state) {
  auto& text = current->application->text();
  for (auto _ : state) {
    double height = 0;
    for (const Text& row : rowTexts())
      height += text.measure(row.view(), ui::Font::system(16), kWidth, 0).height;
    benchmark::DoNotOptimize(height);
  }
}
BENCHMARK(measuredByTheHouse)->Unit(benchmark::kMillisecond);

// The peer: the same font, the same breaks, and no more than the sum of the advances.
class Shaper {
 public:
  Shaper() {
    UErrorCode status = U_ZERO_ERROR;
    breaks_.reset(icu::BreakIterator::createLineInstance(icu::Locale("it"), status));
    auto* face = hb_face_create_for_tables(table, &raw_, nullptr);
    font_ = hb_font_create(face);
    hb_face_destroy(face);
    hb_font_set_scale(font_, 16 * 64, 16 * 64);
    buffer_ = hb_buffer_create();
  }
  ~Shaper() {
    hb_buffer_destroy(buffer_);
    hb_font_destroy(font_);
  }

  int lines(std::string_view utf8) {
    const auto text = icu::UnicodeString::fromUTF8({utf8.data(), static_cast<int>(utf8.size())});
    hb_buffer_clear_contents(buffer_);
    hb_buffer_add_utf16(buffer_, reinterpret_cast<const std::uint16_t*>(text.getBuffer()),
                        text.length(), 0, text.length());
    hb_buffer_guess_segment_properties(buffer_);
    hb_shape(font_, buffer_, nullptr, 0);
    unsigned count = 0;
    const auto* glyphs = hb_buffer_get_glyph_infos(buffer_, &count);
    const auto* places = hb_buffer_get_glyph_positions(buffer_, &count);
    breaks_->setText(text);
    int lines = 1;
    unsigned next = 0;
    double line = 0;
    for (int end = breaks_->next(); end != icu::BreakIterator::DONE; end = breaks_->next()) {
      double word = 0, blank = 0;  // the blank behind it needs no room at a line's end
      for (; next < count && glyphs[next].cluster < static_cast<unsigned>(end); ++next) {
        const bool space = text[static_cast<int>(glyphs[next].cluster)] == u' ';
        (space ? blank : word) += places[next].x_advance / 64.0;
      }
      if (line > 0 && line + word > kWidth) {
        ++lines;
        line = 0;
      }
      line += word + blank;
    }
    return lines;
  }

 private:
  static hb_blob_t* table(hb_face_t*, hb_tag_t tag, void* font) {
    char name[5] = {};
    hb_tag_to_string(tag, name);
    const QByteArray bytes = static_cast<QRawFont*>(font)->fontTable(name);
    return hb_blob_create(bytes.constData(), static_cast<unsigned>(bytes.size()),
                          HB_MEMORY_MODE_DUPLICATE, nullptr, nullptr);
  }

  QRawFont raw_ = QRawFont::fromFont(qt::toQFont(ui::Font::system(16)));
  std::unique_ptr<icu::BreakIterator> breaks_;
  hb_font_t* font_ = nullptr;
  hb_buffer_t* buffer_ = nullptr;
};

void measuredByShapingAlone(benchmark::State& state) {
  Shaper shaper;
  const double line = current->application->text().lineHeight(ui::Font::system(16));
  auto& text = current->application->text();
  for (int i = 0; i < kRows; i += 97) {
    const Text& row = rowTexts()[static_cast<std::size_t>(i)];
    const double ours = text.measure(row.view(), ui::Font::system(16), kWidth, 0).height;
    if (std::lround(ours / line) != shaper.lines(row.view()))
      state.SkipWithError("the peer breaks its lines elsewhere");
  }
  for (auto _ : state) {
    int lines = 0;
    for (const Text& row : rowTexts()) lines += shaper.lines(row.view());
    benchmark::DoNotOptimize(lines);
  }
}
BENCHMARK(measuredByShapingAlone)->Unit(benchmark::kMillisecond);

double milliseconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double mostOf(std::vector<double> times, double share) {
  std::sort(times.begin(), times.end());
  return times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
}

// With 1 assistive technology listens. The renderer's part is the drawing, on whatever
// thread the toolkit has for it, and the work of all other threads; where it draws on the
// main one, that is taken from the main thread's.
void scrollRows(benchmark::State& state) {
  auto& w = *current;
  const bool reader = state.range(0) != 0;
  QAccessible::setActive(reader);
  KesPanelWrapper base;
  auto list = newList(w, base);
  auto page = platform::makeShared<ui::ViewController>();
  w.window->setRootViewController(page);
  page->view().addSubview(base.native());
  for (const Text& text : rowTexts()) list->_addtextitem(text, nullptr);
  qt::QtLoop loop(*w.platform, *w.screen);
  w.window->show();
  w.screen->show();
  loop.settle({}, 20000);

  std::vector<double> main, renderer;
  auto& window = w.screen->window();
  double began = 0, drawing = 0;
  std::atomic<bool> swapped{false};
  const auto* mainThread = QThread::currentThread();
  const auto now = [] { return milliseconds(CLOCK_THREAD_CPUTIME_ID); };
  const QMetaObject::Connection links[] = {
      QObject::connect(
          &window, &QQuickWindow::beforeRendering, &window, [&] { began = now(); },
          Qt::DirectConnection),
      QObject::connect(
          &window, &QQuickWindow::frameSwapped, &window,
          [&] {
            drawing = QThread::currentThread() == mainThread ? now() - began : 0;
            swapped = true;
          },
          Qt::DirectConnection)};
  const double most = list->_sv.ScrollViewContentHeight() - list->_sv.Height();
  double offset = 0;
  for (auto _ : state)
    for (int i = 0; i < 500; ++i) {
      swapped = false;
      const double start = now(), startOfAll = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
      offset = offset + 61 < most ? offset + 61 : 0;  // as a finger flicks
      list->_sv.setScrollViewOffsetY(offset);
      while (!swapped) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
      const double own = now() - start;
      main.push_back(own - drawing);
      renderer.push_back(milliseconds(CLOCK_PROCESS_CPUTIME_ID) - startOfAll - own + drawing);
    }
  for (const auto& link : links) QObject::disconnect(link);
  state.counters["main_ms"] = mostOf(main, 0.99);
  state.counters["renderer_ms"] = mostOf(renderer, 0.99);
  page->view().removeAllSubviews();
  QAccessible::setActive(false);
}
BENCHMARK(scrollRows)->Arg(0)->Arg(1)->Iterations(1);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  World w(2);
  current = &w;
  benchmark::RunSpecifiedBenchmarks();
  current = nullptr;
  return 0;
}
