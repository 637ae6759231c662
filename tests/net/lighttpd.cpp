#include "lighttpd.h"

#include "tests/support/test_platform.h"

using testing_support::TestPlatform;

Lighttpd::Lighttpd(const std::filesystem::path& folder) : folder_(folder) {
  const auto at = folder_.string();
  std::filesystem::create_directories(root());
  TestPlatform::write(folder_ / "users", "varlo:segreta\n");
  process_.startSomewhere("lighttpd", [&] {
    port_ = ServerProcess::freePort();
    TestPlatform::write(folder_ / "lighttpd.conf",
                        "server.modules = (\"mod_auth\", \"mod_authn_file\")\n"
                        "server.bind = \"127.0.0.1\"\nserver.port = " +
                            std::to_string(port_) + "\nserver.document-root = \"" +
                            root().string() + "\"\nserver.upload-dirs = (\"" + at +
                            "\")\nauth.backend = \"plain\"\nauth.backend.plain.userfile = \"" + at +
                            "/users\"\nauth.require = (\"/private/\" => (\"method\" => \"digest\", "
                            "\"realm\" => \"town\", \"require\" => \"valid-user\"))\n");
    return process_.start({"/usr/sbin/lighttpd", "-D", "-f", at + "/lighttpd.conf"},
                          "server started");
  });
}
