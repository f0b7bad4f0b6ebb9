// SPDX-License-Identifier: MIT
// Only tables. Heights and distances are plausible for the landscape; nothing else is real.

#include "places.h"

namespace samples {

const Region& mountains()
{
    static const Region region{
        46.43518,
        7.91264,
        {
            {"Hinterau Bahnhof", "Trains every hour until 22:04", "al", 0, 0, 802},
            {"Steg", "Footbridge", "a", 380, 210, 811},
            {"Fuchswald", "", "aa", 760, 640, 948},
            {"Untere Alp", "Cheese from June on", "ac", 1010, 1190, 1136},
            {"Kreuzboden", "Path forks: keep left", "ah", 1390, 1650, 1322},
            {"Spitzhornhuette", "Hut (44 beds)", "r", 1880, 2010, 1548},
            {"Spitzhorn", "Summit book under the cross", "ah", 2310, 2280, 1791},
            {"Windluecke", "", "ah", 1760, 2640, 1570},
            {"Lautersee", "Cold!", "ab", 1080, 2390, 1283},
            {"Obere Saege", "", "a", 640, 1780, 1098},
            {"Kapelle", "Spring water", "y", 240, 1160, 934},
            {"Hinterau Camping", "Shop opens at 7", "j", -210, 480, 806},
            {"Tankstelle Grund", "", "o", -640, -120, 795},
            {"Doktor Imboden", "Tel. 555-0137", "l", -160, -90, 801},
        },
        {
            {"Spitzhorn Panorama", "Bring a pencil", "bergziege", "under the third stone",
             "Traditional", "140508", "110808", "1.5", "4", 2290, 2262, 1786},
            {"Alte Saege", "", "team murmeli", "inside the wheel", "Traditional", "020607", "", "2",
             "2", 655, 1741, 1099},
            {"Three Springs 1", "Add the digits on the sign", "bergziege", "", "Multi-cache",
             "280209", "", "3.5", "2.5", 262, 1138, 935},
            {"Station Mystery", "Solve it at home", "nachteule", "not at the station", "Mystery",
             "", "", "4", "1", 18, -44, 802},
            {"Lautersee View", "", "nachteule", "", "Earthcache", "170708", "", "2", "3", 1049,
             2433, 1290},
        }};
    return region;
}

const Region& coast()
{
    static const Region region{
        44.61207,
        -124.04391,
        {
            {"Gull Point Parking", "Gate closes at dusk", "a", 0, 0, 14},
            {"Gull Point Light", "Tours at 11 and 2", "u", -420, 180, 31},
            {"Tide Pools", "Low tide only", "ab", -510, 560, 2},
            {"Agate Cove", "", "ab", -380, 1040, 3},
            {"Driftwood Bend", "", "a", -240, 1530, 4},
            {"Salal Trail South", "", "aa", 60, 1490, 38},
            {"Lookout Rock", "Whales in March", "ah", 190, 960, 97},
            {"Old Quarry", "", "z", 330, 520, 62},
            {"Pelican Harbor", "Fuel dock", "w", 1240, 210, 1},
            {"Chowder House", "Closed on Mondays", "ac", 1310, 320, 6},
            {"Bell Buoy 4", "Fl G 4s", "n", -1980, 740, 0},
        },
        {
            {"Keeper's Window", "", "saltspray", "look up", "Traditional", "210906", "", "1", "1.5",
             -402, 166, 30},
            {"Tide Table", "Check the tide first!", "saltspray", "above the high water mark",
             "Traditional", "050508", "060508", "2", "3", -496, 588, 3},
            {"Quarry Bones", "", "rockhound61", "rusty pipe", "Multi-cache", "", "", "2.5", "3",
             341, 548, 64},
            {"Harbor Lights", "Stealth needed", "The Petrels", "magnetic", "Traditional", "301107",
             "", "1.5", "1", 1262, 244, 4},
        }};
    return region;
}

const Region& saddle()
{
    static const Region region{-44.65832,
                               169.13577,
                               {
                                   {"Matukere Road End", "Ford after rain", "a", 0, 0, 372},
                                   {"Swing Bridge", "Two people at most", "a", 290, -480, 380},
                                   {"Beech Flat", "Sandflies", "j", 520, -1060, 428},
                                   {"Bluff", "Old slip", "z", 430, -1590, 611},
                                   {"Kea Hut", "Six bunks", "c", 780, -1980, 834},
                                   {"Kea Saddle", "", "ah", 1360, -2290, 1187},
                                   {"Tarn", "Good water", "ab", 1690, -1840, 1049},
                                   {"Long Spur", "Steep", "ah", 1730, -1230, 813},
                                   {"Lake Head", "", "ab", 1580, -640, 402},
                                   {"Lake Jetty", "Water taxi at 16:00", "w", 1010, -210, 341},
                                   {"Woolshed", "", "b", 490, 160, 355},
                               },
                               {
                                   {"Kea Proof", "Close the lid", "tussock", "heavy flat stone",
                                    "Traditional", "110109", "", "2.5", "4.5", 1342, -2268, 1184},
                                   {"Swinging", "", "tussock", "far side", "Traditional", "", "",
                                    "1.5", "2", 306, -512, 381},
                                   {"Taxi Rank", "Boats only", "Bluewater Crew", "", "Virtual",
                                    "020210", "030210", "1", "1.5", 1004, -198, 341},
                               }};
    return region;
}

const Region& fjord()
{
    static const Region region{-51.02744,
                               -73.08516,
                               {
                                   {"Puerto Quieto", "Kayak hire", "w", 0, 0, 1},
                                   {"Isla Chica", "", "ad", -540, 370, 2},
                                   {"Punta Cormoran", "Strong wind after noon", "m", -1150, 420, 1},
                                   {"Bahia Serena", "Landing on gravel", "i", -1710, 860, 1},
                                   {"Playa Larga", "", "ab", -1560, 1480, 2},
                                   {"Cascada", "", "p", -980, 1690, 9},
                                   {"Refugio Lenga", "Key at the jetty", "r", -410, 1370, 12},
                                   {"Canal Norte", "", "aj", -160, 740, 0},
                                   {"Naufragio", "Boiler dries at low water", "ao", -870, -310, 0},
                                   {"Mirador Ventisquero", "", "ah", -1240, 2380, 486},
                               },
                               {
                                   {"Lenga Shelter", "", "austral", "third beam", "Traditional",
                                    "191208", "", "1.5", "2", -402, 1384, 13},
                                   {"The Boiler", "Kayak needed", "austral", "", "Traditional", "",
                                    "", "2", "5", -861, -322, 1},
                               }};
    return region;
}

} // namespace samples
