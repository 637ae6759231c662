// KesFile: the one door to the file system. Reached as File(); holds no state but
// virtualAssetsFolder.
//
// Every operation takes a folder and a name; the name is joined to the folder by
// Combine. Operations block the calling thread; the application calls them on the main
// thread. Failures are KesException with an empty name and the text given at each
// operation, where %@ names the file ("assets/laymenu.kil: No such file or directory").
// Assets are read-only and stored under lower-case names: "The assets folder is
// readonly." Every operation refuses, with its own text, a name that climbs out of its
// folder; what writes, deletes or makes refuses the named folders themselves as well, and
// whatever lies among the assets. Sizes are bytes, times are
// ticks.
#pragma once

#include "runtime/core/list.h"
#include "runtime/core/map.h"
#include "runtime/data/files/input_stream.h"
#include "runtime/data/files/output_stream.h"

namespace kes {

class KesFile final : public Object {
 public:
  static KesFile& shared();
  std::string_view className() const override { return "KesFile"; }

  Text virtualAssetsFolder;  // when set, assets are here
  Text DirAssets() const;
  Text DirDocuments() const;  // ends in a separator, as DirLibrary does
  Text DirLibrary() const;
  Text DirTemp() const;

  static Text Combine(std::string_view dir, std::string_view name);
  bool Exists(std::string_view dir, std::string_view name) const;
  // A failure becomes the last error; nothing is thrown but the assets rule.
  void Delete(std::string_view dir, std::string_view name) const;
  // With the folders on the way. "Failed to create directory: %@"
  void MakeDir(std::string_view parent, std::string_view name) const;
  // "Error reading from file system: %@"
  KesList ListFiles(std::string_view dir) const;

  // "Error opening stream: %@"
  KesInputStream OpenInput(std::string_view dir, std::string_view name) const;
  KesOutputStream OpenOutput(std::string_view dir, std::string_view name, bool append) const;
  // Replaces the target. "Error copying file: %@"
  void Copy(std::string_view sourceDir, std::string_view sourceName, std::string_view targetDir,
            std::string_view targetName) const;
  // Replaces the target at once: it is there whole, before or after. "Error moving file: %@"
  void Move(std::string_view sourceDir, std::string_view sourceName, std::string_view targetDir,
            std::string_view targetName) const;
  // By blocks of 8192 bytes; closes the input, leaves the output open.
  static void Copy2(KesInputStream in, KesOutputStream out);

  // "Error getting attributes: %@"
  KesMap GetAttributes(std::string_view dir, std::string_view name) const;
  bool IsDirectory(std::string_view dir, std::string_view name) const;
  std::int64_t Size(std::string_view dir, std::string_view name) const;
  std::int64_t LastModified(std::string_view dir, std::string_view name) const;
  // "Error setting ExcludeFromBackup flag: %@"
  void SetExcludeFromBackup(std::string_view dir, std::string_view name, bool exclude) const;

  // "Error reading file. Incorrect encoding", "Error reading file: %@"
  Text ReadString(std::string_view dir, std::string_view name) const {
    return ReadString2(dir, name, "UTF8");
  }
  Text ReadString2(std::string_view dir, std::string_view name, std::string_view charset) const;
  std::vector<std::uint8_t> readBytes(std::string_view dir, std::string_view name) const;
  // "Error writing file: %@"
  void WriteString(std::string_view dir, std::string_view name, std::string_view text) const {
    WriteString2(dir, name, text, "UTF8");
  }
  void WriteString2(std::string_view dir, std::string_view name, std::string_view text,
                    std::string_view charset) const;

  // One element a line; empty lines are no elements.
  KesList ReadList(std::string_view dir, std::string_view name) const;
  void WriteList(std::string_view dir, std::string_view name, const KesList& list) const;
  // One "key=value" a line, "=" in a key as "\="; line feeds of a value become blanks.
  KesMap ReadMap(std::string_view dir, std::string_view name) const;
  void WriteMap(std::string_view dir, std::string_view name, const KesMap& map) const;

  // The name under which the file is stored; throws when it may not be written.
  Text checkAssets(std::string_view dir, std::string_view name, bool write) const;
  bool isAssets(std::string_view dir) const;

  // For what opens files by itself: the path of a stored name.
  struct Path {
    std::string text;
    Text error;  // set when nothing may open it
  };
  static Path pathToOpen(std::string_view dir, std::string_view storedName, bool write);
};

inline KesFile& File() { return KesFile::shared(); }

// Whether a name, say one that a service sent, is one file in its folder: not empty, no
// separator, no control character, neither "." nor "..".
bool isPlainFileName(std::string_view name) noexcept;

}  // namespace kes
