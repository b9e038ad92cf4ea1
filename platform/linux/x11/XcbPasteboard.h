// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Pasteboard.h"
#include "platform/linux/x11/SelectionReader.h"

#include <vector>

// The CLIPBOARD selection. Qt would wait for its owner.
class XcbPasteboard : public Pasteboard {
public:
    explicit XcbPasteboard(std::shared_ptr<XcbConnection> connection,
                           std::chrono::milliseconds patience = SelectionReader::kPatience);

    void readFileURLs(Done done) override;

private:
    void answer(const QList<QUrl> &files);

    std::shared_ptr<XcbConnection> connection;
    SelectionReader reader;
    std::vector<Done> askers; // all are told what the last one is told
};
