// SPDX-License-Identifier: MIT
// Symbols that mean much the same share a picture. Those that mean no more than "a place" have
// none.

#include "host/formats/SymbolPictures.h"

#include <gps/Characters.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

namespace host {
namespace {

constexpr std::string_view kAerial =
    "M8 5l4 10h-2l-1-3H7l-1 3H4zM8 7l-1 3h2zM2 1h2v6H2zM12 1h2v6h-2zM7 1h2v3H7z";
constexpr std::string_view kArrow = "M6 2h8v8h-3V7l-7 7-2-2 7-7H6z";
constexpr std::string_view kBed = "M1 3h2v5h12v6h-2v-3H3v3H1zM4 5h3v2H4zM8 4h5l2 2v1H8z";
constexpr std::string_view kBoat = "M7 1v9H2zM9 3l4 7H9zM1 11h14l-3 4H4z";
constexpr std::string_view kBuoy = "M7 1h2v3l3 7H4l3-7zM1 12q3.5-2 7 0t7 0v2q-3.5 2-7 0t-7 0z";
constexpr std::string_view kCar = "M4 3h8l2 5h1v5h-2v2h-2v-2H5v2H3v-2H1V8h1zM5 5L4 8h8l-1-3z";
constexpr std::string_view kCity = "M1 6h4v9H1zM6 1h5v14H6zM12 5h3v10h-3zM8 3v2h1V3zM8 7v2h1V7z";
constexpr std::string_view kColumns =
    "M8 1l7 4v1H1V5zM2 7h2v5H2zM7 7h2v5H7zM12 7h2v5h-2zM1 13h14v2H1z";
constexpr std::string_view kCross = "M6 2h4v4h4v4h-4v4H6v-4H2V6h4z";
constexpr std::string_view kCutlery =
    "M3 1h1v4h1V1h1v4h1V1h1v6L6.5 8v7h-2V8L3 7zM10 1q3 1 3 7h-1v7h-2z";
constexpr std::string_view kDiver = "M1 3h14v10H1zM3 5v1l8 5h2v-1L5 5z";
constexpr std::string_view kFish = "M1 8q5-6 10-1l4-3v8l-4-3Q6 14 1 8zM4 7h1v1H4z";
constexpr std::string_view kFuel = "M2 1h8v14H2zM4 3v3h4V3zM11 4l3 2v7h-3v-2h1V8h-1z";
constexpr std::string_view kGlass = "M4 1h8q0 8-3 8v4h2v2H5v-2h2V9Q4 9 4 1z";
constexpr std::string_view kGolf = "M6 1l7 3-5 2.5V13h3v2H3v-2h3z";
constexpr std::string_view kHouse = "M8 1L1 8h2v7h4v-5h2v5h4V8h2z";
constexpr std::string_view kInformation = "M6 1h4v3H6zM5 6h5v7h2v2H4v-2h2V8H5z";
constexpr std::string_view kLighthouse = "M6 4h4l1 11H5zM6 1h4v2H6zM1 1l4 1-4 2zM15 1l-4 1 4 2z";
constexpr std::string_view kPeak = "M1 14L6 4l3 5 2-3 4 8z";
constexpr std::string_view kPlane = "M7 1h2v5l6 4v2l-6-2v3l2 2v1H5v-1l2-2v-3l-6 2v-2l6-4z";
constexpr std::string_view kStar = "M8 1l2 5h5l-4 3.3 1.5 5.2L8 11.5 3.5 14.5 5 9.3 1 6h5z";
constexpr std::string_view kTarget = "M8 1a7 7 0 010 14A7 7 0 018 1zm0 2a5 5 0 000 10A5 5 0 008 "
                                     "3zm0 3a2 2 0 010 4 2 2 0 010-4z";
constexpr std::string_view kTent = "M8 1l7 14h-4L8 9l-3 6H1z";
constexpr std::string_view kTree = "M8 1l4 5h-2l4 5H9v4H7v-4H2l4-5H4z";
constexpr std::string_view kUmbrella = "M8 1q7 0 7 7H9v6H7V8H1q0-7 7-7z";
constexpr std::string_view kWarning = "M8 1l7 14H1zM7 6v5h2V6zM7 12v2h2v-2z";
constexpr std::string_view kWaves =
    "M1 4q3.5-3 7 0t7 0v2q-3.5 3-7 0t-7 0zM1 10q3.5-3 7 0t7 0v2q-3.5 3-7 0t-7 0z";

constexpr auto kSymbols = std::to_array<SymbolPicture>({
    {"aerial", kAerial},
    {"airport", kPlane},
    {"amusement park", kStar},
    {"anchor", kBoat},
    {"atm", kColumns},
    {"auto repair", kCar},
    {"ball park", kStar},
    {"bank", kColumns},
    {"bar", kCutlery},
    {"beach", kUmbrella},
    {"boat ramp", kBoat},
    {"boating", kBoat},
    {"buoy", kBuoy},
    {"camp", kTent},
    {"campground", kTent},
    {"camping", kTent},
    {"car", kCar},
    {"car repair", kCar},
    {"city", kCity},
    {"city (capitol)", kCity},
    {"city (large)", kCity},
    {"city (medium)", kCity},
    {"city (small)", kCity},
    {"danger area", kWarning},
    {"diver down flag", kDiver},
    {"exit", kArrow},
    {"exit ramp", kArrow},
    {"fast food", kCutlery},
    {"first aid", kCross},
    {"fishing area", kFish},
    {"forest", kTree},
    {"fuel", kFuel},
    {"garden", kTree},
    {"gas station", kFuel},
    {"golf", kGolf},
    {"golf course", kGolf},
    {"hospital", kCross},
    {"hotel", kBed},
    {"house", kHouse},
    {"hunting and fishing", kFish},
    {"hunting area", kFish},
    {"information", kInformation},
    {"large city", kCity},
    {"lighthouse", kLighthouse},
    {"lodging", kBed},
    {"major city", kCity},
    {"marina", kBoat},
    {"medical facility", kCross},
    {"medium city", kCity},
    {"museum", kColumns},
    {"nav aid", kBuoy},
    {"navaid", kBuoy},
    {"obstruction", kWarning},
    {"park", kTree},
    {"picnic area", kTree},
    {"radio beacon", kAerial},
    {"residence", kHouse},
    {"resort", kUmbrella},
    {"restaurant", kCutlery},
    {"rock", kWarning},
    {"rv park", kCar},
    {"rv service", kCar},
    {"scenic area", kPeak},
    {"scuba", kDiver},
    {"scuba diving area", kDiver},
    {"shipwreck", kBoat},
    {"shooting", kTarget},
    {"shooting range", kTarget},
    {"sight seeing", kPeak},
    {"small city", kCity},
    {"sounding", kWaves},
    {"sports arena", kStar},
    {"stadium", kStar},
    {"summit", kPeak},
    {"tall tower", kAerial},
    {"tourist information", kInformation},
    {"truck service", kCar},
    {"truck stop", kCar},
    {"viewpoint", kPeak},
    {"winery", kGlass},
    {"wreck", kBoat},
    {"zoo", kStar},
});

static_assert(std::is_sorted(kSymbols.begin(), kSymbols.end(),
                             [](const SymbolPicture& a, const SymbolPicture& b) {
                                 return a.symbol < b.symbol;
                             }),
              "findSymbolPicture() searches by halves");

} // namespace

const SymbolPicture* findSymbolPicture(std::string_view symbol)
{
    std::string name;
    std::transform(symbol.begin(), symbol.end(), std::back_inserter(name), gps::lowerCase);
    const auto* const found =
        std::lower_bound(kSymbols.begin(), kSymbols.end(), name,
                         [](const SymbolPicture& entry, const std::string& sought) {
                             return entry.symbol < sought;
                         });
    return found != kSymbols.end() && found->symbol == name ? found : nullptr;
}

} // namespace host
