// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <sys/resource.h>

// While it exists, nothing can be opened, and the system grants no inotify watch.
class NoDescriptors {
public:
    NoDescriptors()
    {
        if (::getrlimit(RLIMIT_NOFILE, &before) != 0)
            qFatal("The limit is not known.");
        set({0, before.rlim_max});
    }
    ~NoDescriptors() { set(before); }
    Q_DISABLE_COPY_MOVE(NoDescriptors)

private:
    static void set(const rlimit &limit)
    {
        if (::setrlimit(RLIMIT_NOFILE, &limit) != 0)
            qFatal("The limit could not be set.");
    }

    rlimit before = {};
};
