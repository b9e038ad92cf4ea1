// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"

#include <QTest>

int runContracts(World &world, int argc, char *argv[])
{
    int faults = 0;
    for (const auto &make : {accessibilityTrustContract,
                             activationPolicyContract,
                             alertsContract,
                             colorArchiveContract,
                             dragPasteboardContract,
                             dragSessionsContract,
                             dropPasteboardContract,
                             eventMonitorsContract,
                             fileEventStreamsContract,
                             floatingPanelsContract,
                             keyTapContract,
                             loginItemContract,
                             mainQueueContract,
                             menuBarContract,
                             openPanelsContract,
                             pasteboardContract,
                             screensContract,
                             statusBarContract,
                             systemAppearanceContract,
                             thumbnailGeneratorContract,
                             userDefaultsContract,
                             workspaceContract})
        faults += QTest::qExec(make(world).get(), argc, argv);
    return faults;
}
