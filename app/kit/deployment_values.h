// The deployment of this build. Copy this file, put your town's hosts and keys in, and
// configure with -DVARLO_DEPLOYMENT=<your file>. Keys and tokens here open nothing.
#pragma once

namespace varlo::deployment::values {

inline constexpr const char* kDocuments = "https://documenti.varlo.example";
inline constexpr const char* kRepository = "https://archivio.varlo.example";
inline constexpr const char* kService = "https://servizi.varlo.example";
inline constexpr const char* kGraph = "https://graph.varlo.example";
inline constexpr const char* kOpenData = "https://dati.varlo.example";
inline constexpr const char* kFacebook = "https://www.facebook.com";
inline constexpr const char* kMaps = "https://maps.apple.com";
inline constexpr const char* kTownHall = "http://www.varlo.example";
inline constexpr const char* kActsPortal = "http://albo.varlo.example";
// The ground of maps: your own tile server, or one whose terms you have read.
inline constexpr const char* kTiles = "https://mappe.varlo.example/tiles/{z}/{x}/{y}{r}.png";
inline constexpr const char* kTilesAttribution = "© Comune di Varlo";
inline constexpr double kTownLatitude = 45.2378, kTownLongitude = 10.0425, kTownZoom = 15;
inline constexpr const char* kAppStorePage = "https://apps.varlo.example/infovarlo";

// The broker of push messages ("mqtts://host[:port]"; empty: none, and none is tried), what
// its topics begin with, and whether a broker elsewhere may be spoken to in the clear.
inline constexpr const char* kPushBroker = "";
inline constexpr const char* kPushPrefix = "varlo";
inline constexpr bool kPlainPush = false;

inline constexpr const char* kGraphToken =
    "0000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
    "000000000000000000000000000000000000000000000000000000000000000000000000000000000";
inline constexpr const char* kPlacesKey = "000000000000000000000000000000000000000";
inline constexpr const char* kOpenDataToken = "0000000000000000000000000";
inline constexpr const char* kMapsKey = "000000000000000000000000000000000000000";

}  // namespace varlo::deployment::values
