// SPDX-License-Identifier: MIT
#include "tests/contracts/Contracts.h"

#include <QTest>

int runContracts(World &world, int argc, char *argv[])
{
    int faults = 0;
    for (const auto &make :
         {activationPolicyContract, colorArchiveContract, dragPasteboardContract, eventMonitorsContract,
          fileEventStreamsContract, floatingPanelsContract, keyTapContract, loginItemContract, mainQueueContract,
          pasteboardContract, screensContract, statusBarContract, systemAppearanceContract, thumbnailGeneratorContract,
          userDefaultsContract, workspaceContract})
        faults += QTest::qExec(make(world).get(), argc, argv);
    return faults;
}
