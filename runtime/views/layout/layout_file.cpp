#include "runtime/views/layout/layout_file.h"

#include "runtime/core/language/common.h"
#include "runtime/data/files/file.h"
#include "runtime/views/layout/data_input_stream.h"

namespace kes {

namespace {

std::vector<KesLayoutValues> readVariants(KesDataInputStream& in) {
  std::vector<KesLayoutValues> variants;
  const std::int32_t count = in.readInt();
  for (std::int32_t i = 0; i < count && !in.atEnd(); ++i) {
    in.readFloat();  // layout values are normalised
    const std::int32_t width = in.readInt();
    variants.emplace_back(width, in.readInt());
  }
  return variants;
}

LayoutFile read(KesInputStream file) {
  KesDataInputStream in(std::move(file));
  in.readInt();
  in.readAndDiscard(in.readInt());
  const auto table = in.readStringTable();
  LayoutFile layout;
  layout.variants = readVariants(in);
  layout.props = in.readMap(table);
  if (layout.variants.empty()) throw KesException("The layout has no variant");
  return layout;
}

}  // namespace

LayoutFile readLayout(std::string_view fileName) {
  const std::string name(fileName);
  auto file = File().OpenInput(File().DirAssets(), name);
  try {
    LayoutFile layout = read(file);
    file.Close();
    return layout;
  } catch (const KesException& e) {
    file.Close();
    KesCommon::LogError(formatText("Layout file %@ is damaged: %@", {name, e.reason()}));
    throw KesException(name, e.reason());
  }
}

}  // namespace kes
