// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/helpers/HelperProcess.h"
#include "platform/linux/helpers/Protocol.h"

#include <QByteArray>

#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <vector>

class MessageReader;

// What becomes of a file that is to be opened for a picture.
struct OpenedFile {
    FileKind kind = FileKind::Missing;
    FileStateRecord state;
    Passed passed = Passed::No;
};

// Asks about the user's files without ever touching one: processes of their own do that. Each answer comes once, later,
// on the main thread. One file system that does not answer keeps one question waiting, and those for the same folder.
// Main thread only.
class FileHelpers {
public:
    // After that time without an answer a file's folder counts as slow.
    static constexpr double kLate = 0.08; // seconds
    // Helpers without anything to do are kept so long.
    static constexpr double kIdle = 10.0; // seconds

    explicit FileHelpers(MainQueue &mainQueue);
    ~FileHelpers();

    // A file's kind, and up to so many of its first bytes. Missing when it cannot be found out. `late` is called at
    // most once before, also at once where the file's folder is slow already.
    void look(const QByteArray &path, quint32 firstBytes, std::function<void(FileKind, const QByteArray &)> done,
              std::function<void()> late = nullptr);

    // Opens `path` and those of `entries` that are there, and passes them on with `picture` over `socket`; unless the
    // file is in the state `refused`. Nothing when no helper could do it. `late` is called at most once before.
    void make(const QByteArray &path, const FileStateRecord &refused, const std::vector<QByteArray> &entries,
              const std::string &picture, const std::shared_ptr<Descriptor> &socket, std::function<void()> late,
              std::function<void(std::optional<OpenedFile>)> done);

    // Has the inotify queue, if that is one, wait for the file's writer; answers the watch, negative for none, and the
    // file's state after that.
    void watch(const QByteArray &path, int queue,
               std::function<void(int, const std::optional<FileStateRecord> &)> done);

    // Writes the file `path` in or below `folder`.
    void keep(const QByteArray &folder, const QByteArray &path, const QByteArray &bytes);

    // The helpers that are there.
    std::vector<pid_t> processes() const;

private:
    using Reply = std::function<void(MessageReader *)>; // null without an answer

    struct Question {
        QByteArray folder;
        std::string message;
        std::vector<std::shared_ptr<Descriptor>> descriptors;
        Reply reply;
        std::function<void()> late;
    };

    struct Opener {
        std::shared_ptr<HelperProcess> helper;
        std::optional<Question> question;
        bool isLate = false;
        quint64 turn = 0; // of questions; a late note looks at it
    };

    void ask(Question question);
    void pump();
    void give(Opener &opener, Question question);
    bool startOpener();
    std::deque<Question>::iterator nextQuestion();
    void failLater(std::deque<Question> questions);
    void noteLate(const Opener *opener, quint64 turn);
    void answered(const Opener *opener, Received &&received);
    void ended(const Opener *opener);
    void giveUpOldest();
    void armIdle();
    bool isLateFolder(const QByteArray &folder) const;

    MainQueue &mainQueue;
    std::deque<Question> waiting;
    std::list<Opener> openers;
    std::shared_ptr<HelperProcess> keeper;
    int beingKept = 0;
    quint64 lastTurn = 0;
    std::shared_ptr<Timer> idle;
    std::shared_ptr<bool> alive = std::make_shared<bool>(true);
};
