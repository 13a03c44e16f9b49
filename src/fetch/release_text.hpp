#pragma once

#include <string>
#include <string_view>

// The bytes between the first "<!--ReleaseInfo" of the page body and the next "-->", without line
// feeds and carriage returns; blanks at the ends stay. Empty when a marker is missing; with debug,
// a line on standard error then names the marker.
std::string extract_release_text(std::string_view body, bool debug);
