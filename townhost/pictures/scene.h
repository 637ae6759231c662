// Pictures of the town, drawn: a sky, hills, roofs and one thing that the picture is about.
// They stand where a real town would publish photographs.
//
// The same picture for the same scene, on every machine. Any thread.
#pragma once

#include <string>

namespace town {

struct Scene {
  enum class Subject {
    Square,
    Market,
    Park,
    River,
    RoadWorks,
    School,
    Books,
    Stage,
    Bins,
    Snow,
    Bicycle,
    Pitch
  };
  Subject subject = Subject::Square;
  unsigned seed = 0;  // tells two pictures of one subject apart
  bool evening = false;
};

// A PNG of so many pixels; between 16 and 2,000 each way.
std::string paint(const Scene& scene, int width, int height);

}  // namespace town
