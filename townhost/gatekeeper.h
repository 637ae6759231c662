// Who may enter the protected paths: one user, by the basic or digest scheme.
//
// Digest is MD5 with qop "auth". The challenges carry their own proof, so
// nothing is stored per client. Any thread.
#pragma once

#include <atomic>
#include <string>

namespace town {

class Gatekeeper {
 public:
  static constexpr const char* user = "varlo";
  static constexpr const char* password = "segreta";
  static constexpr const char* realm = "Comune di Varlo";

  Gatekeeper();

  static bool basicAllows(const std::string& authorization);
  // method and target as in the request line.
  bool digestAllows(const std::string& authorization, const std::string& method,
                    const std::string& target) const;

  static std::string basicChallenge();
  std::string digestChallenge();

 private:
  std::string sealed(const std::string& serial) const;

  std::string secret_;
  std::atomic<unsigned> serial_{0};
};

}  // namespace town
