#pragma once

// Guard files: checksums that tell whether a settings file was changed behind the system's back.
// Lists of files are ended by a null pointer.

namespace corvanshell {

// How a guard is renewed.
enum GuardMode : int {
    kGuardOfOneFile = 0,   // it comes to hold exactly the files given
    kOneOfSharedGuard = 1, // the part of the one file given; the others stay
    kSharedGuard = 3,      // the parts of the files given; the others stay
};

// Makes `guard` match the files, in one of the modes above. False when it can't be written; the old guard
// then stays as it was.
[[nodiscard, gnu::sentinel]] bool UpdateGuardFile(const char* guard, int mode, ...);

// True unless a file differs from what the guard says of it.
[[nodiscard, gnu::sentinel]] bool CheckGuardFile(const char* guard, ...);

} // namespace corvanshell

namespace PwdGen {

// Throws std::runtime_error unless the file matches its guard, or neither of the two knows of the file; it is
// a std::system_error when the file or the guard can't be read at all.
void PWDGCheckCrgOfFile(const char* file, const char* guard);

} // namespace PwdGen

namespace CHCRG {

// Writes the guard of one file. Throws std::runtime_error when it can't be written.
void SaveCrgToFile(const char* file, const char* guard);

} // namespace CHCRG
