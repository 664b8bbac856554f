#pragma once

// Everything that the appliance's closed libraries offer. A file that needs one subject includes that header.

#include "platform/cluster_file.h"
#include "platform/console.h"
#include "platform/date_time.h"
#include "platform/guards.h"
#include "platform/ini.h"
#include "platform/locks.h"
#include "platform/log.h"
#include "platform/network.h"
#include "platform/pager.h"
#include "platform/path_list.h"
#include "platform/processes.h"
#include "platform/shell_tree.h"
#include "platform/startup.h"
