#pragma once

// Set-up and tear-down of libxml2. In between, its messages go to the log and never to the terminal.
void InitXml();
void CleanupXml();
