// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

class World;

// One suite for each service. It states what the service's header promises, on every platform.
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

// This suite is not part of runContracts(), because other processes must claim the session too. Its program starts
// itself with this argument; then it claims the session and exits with the result.
std::unique_ptr<QObject> sessionInstanceContract(World &world);
constexpr char kClaimArgument[] = "--claim-session";
// Exit codes that a program does not have when it cannot start.
constexpr int kClaimed = 40;
constexpr int kRefused = 41;

// Runs all other suites, and returns the number of failures.
int runContracts(World &world, int argc, char *argv[]);
