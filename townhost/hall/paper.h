// A sheet of paper of the town hall, as a PDF. Any thread.
#pragma once

#include <string>
#include <vector>

namespace town {

// One A4 page under the town's head; the first line is its title.
std::string pdf(const std::vector<std::string>& paragraphs);

}  // namespace town
