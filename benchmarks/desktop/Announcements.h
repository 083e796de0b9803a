#pragma once
// Figures of the announcements with their open window and panel.

namespace talvora::bench {

// Reads ten thousand into an empty list, painting included; in milliseconds.
double loadAnnouncements();
// One more arrives among ten thousand, painting included; in microseconds.
double announcementArrives();

}  // namespace talvora::bench
