#include "desk.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

fs::path freshFolder() {
  std::string name = (fs::temp_directory_path() / "varlo-qt-XXXXXX").string();
  if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
  return name;
}

platform::Folders foldersUnder(const fs::path& root) {
  const auto s = root.string() + "/";
  return {s, s, s, root.string()};
}

// Made when tests begin to run: listing them needs no Qt.
class QtOnce final : public testing::Environment {
 public:
  void SetUp() override {
    folder_ = freshFolder();
    const platform::SystemClock clock;
    platform::Platform platform(clock, foldersUnder(folder_));
    const platform::PlatformScope scope(platform);
    process_ = std::make_unique<qt::QtProcess>(qt::QtProcess::Options{2, true});
  }
  void TearDown() override {
    process_.reset();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

 private:
  fs::path folder_;
  std::unique_ptr<qt::QtProcess> process_;
};

[[maybe_unused]] auto* const kQt = testing::AddGlobalTestEnvironment(new QtOnce);

qt::QtScreen::Options optionsFor(ui::Size size, double keyboard, std::vector<std::string>& opened) {
  qt::QtScreen::Options o;
  o.keyboard = keyboard;
  o.size = size;
  o.opener = [&opened](const std::string& url) {
    opened.push_back(url);
    return true;
  };
  return o;
}

}  // namespace

Desk::Desk(double keyboard)
    : folder(freshFolder()),
      platform(clock, foldersUnder(folder)),
      scope(platform),
      screen(optionsFor({kWidth, kHeight}, keyboard, opened)),
      app(screen, screen.textEngine()),
      loop(platform, screen),
      hand(screen, loop),
      window(ui::makeShared<ui::Window>(screen.bounds())) {
  window->setRootViewController(ui::makeShared<ui::ViewController>());
  window->makeKey();
  window->show();
  screen.show();
}

Desk::~Desk() {
  window->show(false);
  window = nullptr;
  platform.mainQueue().close();
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}

void Desk::rest() {
  if (!settle()) throw std::runtime_error("it does not come to rest");
}

ui::Ref<ui::Label> Desk::addText(const std::string& text, const ui::Rect& frame, ui::View* parent) {
  auto label = add<ui::Label>(frame, parent);
  label->setText(text);
  return label;
}

QImage Desk::picture(const std::string& name) {
  rest();
  return pictureNow(name);
}

QImage Desk::pictureNow(const std::string& name) {
  const fs::path path = folder / "picture.png";
  if (!loop.grab(path.string())) return {};
  if (const char* keep = std::getenv("VARLO_TEST_PICTURES"); keep && !name.empty())
    fs::copy_file(path, fs::path(keep) / (name + ".png"), fs::copy_options::overwrite_existing);
  return QImage(QString::fromStdString(path.string())).convertToFormat(QImage::Format_RGB32);
}

std::string Desk::redPicture(int width, int height) {
  QImage red(width, height, QImage::Format_RGB32);
  red.fill(Qt::red);
  const auto path = (folder / "rosso.png").string();
  EXPECT_TRUE(red.save(QString::fromStdString(path)));
  return path;
}

QColor Desk::at(const QImage& image, double x, double y) {
  return image.pixelColor(static_cast<int>(x * kScale), static_cast<int>(y * kScale));
}

ui::Rect Desk::ink(const QImage& image, const ui::Rect& area) {
  QRect found;
  const QRect part =
      QRectF(area.x * kScale, area.y * kScale, area.width * kScale, area.height * kScale)
          .toAlignedRect() &
      image.rect();
  for (int y = part.top(); y <= part.bottom(); ++y)
    for (int x = part.left(); x <= part.right(); ++x)
      if (image.pixelColor(x, y) != Qt::white) found |= QRect(x, y, 1, 1);
  return {found.x() / kScale, found.y() / kScale, found.width() / kScale, found.height() / kScale};
}
