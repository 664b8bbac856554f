#pragma once

// Guard files: checksums that tell whether a settings file was changed behind the system's back.
// Lists of files are ended by a null pointer.

namespace corvanshell {

// Makes `guard` match the files. Modes: 0, a guard of one file, makes it hold exactly the files given; 1 and
// 3 renew the parts of one file and of several in a shared guard, and leave the others. False when it can't
// be written; the old guard then stays as it was.
[[nodiscard, gnu::sentinel]] bool UpdateGuardFile(const char* guard, int mode, ...);

// True unless a file differs from what the guard says of it.
[[nodiscard, gnu::sentinel]] bool CheckGuardFile(const char* guard, ...);

} // namespace corvanshell

namespace PwdGen {

// Throws std::runtime_error unless the file matches its guard, or neither of the two knows of the file.
void PWDGCheckCrgOfFile(const char* file, const char* guard);

} // namespace PwdGen

namespace CHCRG {

// Writes the guard of one file. Throws std::runtime_error when it can't be written.
void SaveCrgToFile(const char* file, const char* guard);

} // namespace CHCRG
