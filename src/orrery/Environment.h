#pragma once
// The process as the host needs it.

namespace talvora {

// To be called before the application object is made.
void prepareEnvironment();
// And after it: the toolkit takes the locale as it finds it, but numbers are written in one way only.
void settleLocale();

}  // namespace talvora
