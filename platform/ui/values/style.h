// The measures and colours that every screen draws alike, whoever's program it is (what is
// the program's own lies in branding.h). Points, milliseconds, ARGB.
#pragma once

#include <cstdint>

#include "platform/ui/values/color.h"
#include "platform/ui/values/font.h"

namespace ui::style {

inline constexpr Color kText{0xFF1B1F23};
inline constexpr Color kSecondaryText{0xFF5A646E};
inline constexpr Color kPage{0xFFFFFFFF};
inline constexpr Color kDrawer{0xFFFFFFFF};
inline constexpr Color kToolbar{0xFFF4F6F8};
inline constexpr Color kHairline{0xFFD5DBE0};
inline constexpr Color kSelection{0xFFE3EEF3};
inline constexpr Color kScrim{0x66000000};  // behind the drawer and dialogs
inline constexpr Color kHud{0xE6222B31};    // progress and toast
inline constexpr Color kOnHud{0xFFFFFFFF};
inline constexpr Color kCard{0xFFFFFFFF};
inline constexpr Color kPressed{0x22000000};  // laid over a pressed button
// Shapes stand apart from the page by 3:1, texts by 4.5:1.
inline constexpr Color kFocusRing{0xFFB86000};  // with a white line inside, for dark bars
inline constexpr Color kFieldBorder{0xFF7C8790};
inline constexpr Color kSwitchOff{0xFF7C8790};
inline constexpr Color kHint{0xFF67717B};
inline constexpr Color kDestructive{0xFFB3261E};

inline constexpr double kStatusBarHeight = 20;
inline constexpr double kBarHeight = 44;
inline constexpr double kPromptHeight = 30;
inline constexpr double kToolbarHeight = 44;
inline constexpr double kTapSize = 44;  // the least side of what is tapped
inline constexpr double kBarMargin = 8;
inline constexpr double kBarTitleSize = 17;
inline constexpr double kBarLongTitleSize = 14;  // at least, for one that is too long
inline constexpr double kBarButtonSize = 16;
inline constexpr double kBarIconSize = 22;
inline constexpr double kDrawerWidth = 280;
inline constexpr double kEdgeWidth = 24;  // where the drawer's opening swipe starts
inline constexpr double kCardRadius = 10;
inline constexpr double kCardMargin = 20;
inline constexpr double kCardMaxWidth = 420;
inline constexpr double kDialogCircle = 56;
inline constexpr double kFocusRingWidth = 3;

inline constexpr double kTapSlop = 10;      // a finger that moved more isn't tapping
inline constexpr double kPressMargin = 30;  // around a control, where a press still holds
inline constexpr double kFling = 300;       // points a second that decide a swipe, or turn a page
inline constexpr std::int64_t kTapPause = 300;  // after something new came under the finger
inline constexpr std::int64_t kLongPress = 500;
inline constexpr std::int64_t kPageTransition = 300;
inline constexpr std::int64_t kDrawerTransition = 250;
inline constexpr std::int64_t kBarTransition = 200;
inline constexpr std::int64_t kFade = 200;
inline constexpr std::int64_t kFrame = 16;

// The icon face that bars and dialogs take their symbols from.
inline constexpr const char* kIconFamily = "Material Icons";
inline Font iconFont(double size = kBarIconSize) { return Font::named(kIconFamily, size); }

}  // namespace ui::style
