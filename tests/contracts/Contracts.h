// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

class World;

// One suite a service. Each states what its header promises, for every platform alike.
std::unique_ptr<QObject> accessibilityTrustContract(World &world);
std::unique_ptr<QObject> activationPolicyContract(World &world);
std::unique_ptr<QObject> alertsContract(World &world);
std::unique_ptr<QObject> colorArchiveContract(World &world);
std::unique_ptr<QObject> dragPasteboardContract(World &world);
std::unique_ptr<QObject> dragSessionsContract(World &world);
std::unique_ptr<QObject> dropPasteboardContract(World &world);
std::unique_ptr<QObject> eventMonitorsContract(World &world);
std::unique_ptr<QObject> fileEventStreamsContract(World &world);
std::unique_ptr<QObject> floatingPanelsContract(World &world);
std::unique_ptr<QObject> keyTapContract(World &world);
std::unique_ptr<QObject> loginItemContract(World &world);
std::unique_ptr<QObject> mainQueueContract(World &world);
std::unique_ptr<QObject> menuBarContract(World &world);
std::unique_ptr<QObject> openPanelsContract(World &world);
std::unique_ptr<QObject> pasteboardContract(World &world);
std::unique_ptr<QObject> screensContract(World &world);
std::unique_ptr<QObject> statusBarContract(World &world);
std::unique_ptr<QObject> systemAppearanceContract(World &world);
std::unique_ptr<QObject> thumbnailGeneratorContract(World &world);
std::unique_ptr<QObject> userDefaultsContract(World &world);
std::unique_ptr<QObject> workspaceContract(World &world);

// The one suite that is no part of runContracts(): a session is the desktop's, and other processes claim it too. The
// program that runs it does so itself when it is started with this argument, and exits with what comes of it.
std::unique_ptr<QObject> sessionInstanceContract(World &world);
constexpr char kClaimArgument[] = "--claim-session";
// Neither is what a program answers that could not start.
constexpr int kClaimed = 40;
constexpr int kRefused = 41;

// Runs every other suite; the number of faults.
int runContracts(World &world, int argc, char *argv[]);
