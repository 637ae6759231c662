# Writes every file under ROOT into OUT as C++ (see embedded.h).
file(GLOB_RECURSE files RELATIVE ${ROOT} ${ROOT}/*)
list(SORT files)
set(arrays "")
set(rows "")
set(n 0)
foreach(file ${files})
  file(READ ${ROOT}/${file} hex HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
  string(APPEND arrays "const unsigned char file${n}[] = {${bytes}0};\n")
  string(APPEND rows "      {\"/${file}\", text(file${n}, sizeof file${n} - 1)},\n")
  math(EXPR n "${n} + 1")
endforeach()
file(WRITE ${OUT} "#include \"townhost/embedded.h\"

namespace {
${arrays}
std::string_view text(const unsigned char* bytes, std::size_t size) {
  return {reinterpret_cast<const char*>(bytes), size};
}
}  // namespace

namespace town {
std::vector<EmbeddedFile> embeddedFiles() {
  return {
${rows}  };
}
}  // namespace town
")
