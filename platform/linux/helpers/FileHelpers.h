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

// The result of opening a file for a picture.
struct OpenedFile {
    FileKind kind = FileKind::Missing;
    FileStateRecord state;
    Passed passed = Passed::No;
};

// Asks other processes about the user's files, and never touches one itself. Each answer comes once, later, on the main
// thread. A file system that does not answer delays only its own question and those for the same folder. Main thread
// only.
class FileHelpers {
public:
    // The folder of a file counts as slow after so long without an answer.
    static constexpr double kLate = 0.08; // seconds
    // An idle helper ends after so long.
    static constexpr double kIdle = 10.0; // seconds

    explicit FileHelpers(MainQueue &mainQueue);
    ~FileHelpers();

    // Finds out a file's kind, and reads up to so many of its first bytes. The kind is Missing when it cannot be found
    // out. `late` is called at most once before `done`; at once if the file's folder is already slow.
    void look(const QByteArray &path, quint32 firstBytes, std::function<void(FileKind, const QByteArray &)> done,
              std::function<void()> late = nullptr);

    // Opens `path` and the existing files of `entries`, and passes them with `picture` over `socket`, unless the file
    // is in the state `refused`. Answers nothing when no helper can do it. `late` is called at most once before `done`.
    void make(const QByteArray &path, const FileStateRecord &refused, const std::vector<QByteArray> &entries,
              const std::string &picture, const std::shared_ptr<Descriptor> &socket, std::function<void()> late,
              std::function<void(std::optional<OpenedFile>)> done);

    // Adds a watch for the file's writer to the inotify queue. Answers the watch, which is negative if there is none,
    // and the file's state after that.
    void watch(const QByteArray &path, int queue,
               std::function<void(int, const std::optional<FileStateRecord> &)> done);

    // Writes the file `path` in or below `folder`.
    void keep(const QByteArray &folder, const QByteArray &path, const QByteArray &bytes);

    // The process numbers of the running helpers.
    std::vector<pid_t> processes() const;

private:
    using Reply = std::function<void(MessageReader *)>; // null when there is no answer

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
        quint64 turn = 0; // the number of the question; a late callback compares it
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
