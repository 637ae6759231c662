// The town on a desk: a real HTTP server on 127.0.0.1 with the documents that
// Varlo publishes, right for the day that its clock says, and with faults on
// demand. Tiles of the town's map stand under /tiles/{z}/{x}/{y}.png.
//
// Owned by whoever starts it; it serves on threads of its own from construction
// until stop() or destruction. All members may be called from any thread. The
// constructor throws std::runtime_error if it can't listen.
//
// Over HTTP, for scripts: POST /_faults (see fault_script.h), GET and DELETE
// /_faults; GET and DELETE /_requests; and the paths of trial_paths.h.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "townhost/documents.h"
#include "townhost/faults.h"
#include "townhost/request_log.h"

namespace town {

class TownHost {
 public:
  struct Options {
    // Milliseconds since 1970-01-01 UTC; the machine's clock if empty. Called
    // from the serving threads.
    std::function<std::int64_t()> now;
    std::string version = "1.0";  // the app's newest version
    int port = 0;                 // 0: any that is free
  };

  TownHost();
  explicit TownHost(Options options);
  ~TownHost();
  TownHost(const TownHost&) = delete;
  TownHost& operator=(const TownHost&) = delete;

  int port() const;
  std::string url() const;  // "http://127.0.0.1:<port>", without a slash at the end

  // Cuts what is open, delayed answers included, and returns when all is quiet.
  void stop();

  Faults& faults();
  RequestLog& requests();
  Documents& documents();  // to add to, or to replace one for a test

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace town
