#!/bin/sh
# textpager.sh FILE
#
# Shows a text page by page on a terminal, where one that fits is just shown, and plainly elsewhere. From the pager no shell can be started.
if [ -t 1 ]; then
    LESSSECURE=1 exec less -FX -- "$1"
fi
exec cat -- "$1"
