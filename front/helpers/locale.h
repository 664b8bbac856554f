#pragma once

// Sets the process's locale from its environment and the catalogue of its messages.
void InitLocale(const char* domain);
