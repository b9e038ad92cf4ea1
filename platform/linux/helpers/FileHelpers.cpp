// SPDX-License-Identifier: MIT
#include "platform/linux/helpers/FileHelpers.h"

#include "platform/linux/helpers/Message.h"

#include <algorithm>

#include <unistd.h>

namespace {

constexpr size_t kMostOpeners = 8;
// So many of them serve only folders that answer.
constexpr size_t kReserved = 3;

QByteArray folderOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/'));
}

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<size_t>(bytes.size())};
}

} // namespace

FileHelpers::FileHelpers(MainQueue &queue)
    : mainQueue(queue)
{
}

FileHelpers::~FileHelpers()
{
    alive.reset();
    if (idle)
        idle->invalidate();
}

void FileHelpers::look(const QByteArray &path, quint32 firstBytes,
                       std::function<void(FileKind, const QByteArray &)> done, std::function<void()> late)
{
    Question question;
    question.folder = folderOf(path);
    question.late = std::move(late);
    question.message = MessageWriter().add(FileQuestion::Look).addBytes(view(path)).add(firstBytes).bytes();
    question.reply = [done = std::move(done)](MessageReader *reply) {
        const auto kind = reply ? reply->take<FileKind>() : FileKind::Missing;
        done(kind, reply ? QByteArray::fromStdString(reply->takeBytes()) : QByteArray());
    };
    ask(std::move(question));
}

void FileHelpers::make(const QByteArray &path, const FileStateRecord &refused, const std::vector<QByteArray> &entries,
                       const std::string &picture, const std::shared_ptr<Descriptor> &socket,
                       std::function<void()> late, std::function<void(std::optional<OpenedFile>)> done)
{
    MessageWriter message;
    message.add(FileQuestion::Make).addBytes(view(path)).add(refused).add(static_cast<std::uint32_t>(entries.size()));
    for (const QByteArray &entry : entries)
        message.addBytes(view(entry));
    Question question;
    question.folder = folderOf(path);
    question.message = message.bytes() + picture;
    question.descriptors = {socket};
    question.late = std::move(late);
    question.reply = [done = std::move(done)](MessageReader *reply) {
        OpenedFile file;
        if (reply) {
            file.kind = reply->take<FileKind>();
            file.state = reply->take<FileStateRecord>();
            file.passed = reply->take<Passed>();
        }
        done(reply ? std::optional(file) : std::nullopt);
    };
    ask(std::move(question));
}

void FileHelpers::watch(const QByteArray &path, int queue,
                        std::function<void(int, const std::optional<FileStateRecord> &)> done)
{
    Question question;
    question.folder = folderOf(path);
    question.message = MessageWriter().add(FileQuestion::Watch).addBytes(view(path)).bytes();
    if (queue >= 0)
        question.descriptors = {std::make_shared<Descriptor>(::dup(queue))};
    question.reply = [done = std::move(done)](MessageReader *reply) {
        const int watch = reply ? reply->take<int>() : -1;
        const bool isThere = reply && reply->take<std::uint8_t>() != 0;
        done(watch, isThere ? std::optional(reply->take<FileStateRecord>()) : std::nullopt);
    };
    ask(std::move(question));
}

void FileHelpers::keep(const QByteArray &folder, const QByteArray &path, const QByteArray &bytes)
{
    const auto size = static_cast<std::uint64_t>(bytes.size());
    const Descriptor memory = sealedMemory("parklet-entry", bytes.constData(), size);
    if (!memory.isOpen())
        return;
    if (!keeper) {
        beingKept = 0;
        keeper = HelperProcess::start("parklet-files", {"--keep", folder});
        if (!keeper)
            return;
        keeper->onMessage = [this](Received &&) {
            --beingKept;
            armIdle();
        };
        keeper->onEnd = [this] { keeper.reset(); };
    }
    // If the helper cannot take the message now, the entry is lost, and is made again at the next request.
    const std::string message = MessageWriter().add(FileQuestion::Keep).addBytes(view(path)).add(size).bytes();
    if (keeper->send(message, {memory.get()}))
        ++beingKept;
}

std::vector<pid_t> FileHelpers::processes() const
{
    std::vector<pid_t> list;
    for (const Opener &opener : openers)
        list.push_back(opener.helper->processId());
    if (keeper)
        list.push_back(keeper->processId());
    return list;
}

bool FileHelpers::isLateFolder(const QByteArray &folder) const
{
    return std::ranges::any_of(openers, [&folder](const Opener &opener) {
        return opener.isLate && opener.question && opener.question->folder == folder;
    });
}

void FileHelpers::ask(Question question)
{
    if (question.late && isLateFolder(question.folder))
        std::exchange(question.late, nullptr)();
    waiting.push_back(std::move(question));
    pump();
}

// The oldest question for a folder that answers; otherwise, if there is a helper to spare, the oldest of all.
std::deque<FileHelpers::Question>::iterator FileHelpers::nextQuestion()
{
    const auto next =
        std::ranges::find_if(waiting, [this](const Question &question) { return !isLateFolder(question.folder); });
    const auto lateOnes = std::ranges::count_if(openers, &Opener::isLate);
    return next != waiting.end() || static_cast<size_t>(lateOnes) >= kMostOpeners - kReserved ? next : waiting.begin();
}

bool FileHelpers::startOpener()
{
    auto helper = HelperProcess::start("parklet-files", {});
    if (!helper)
        return false;
    openers.push_back({std::move(helper), {}, false, 0});
    Opener *opener = &openers.back();
    opener->helper->onMessage = [this, opener](Received &&received) { answered(opener, std::move(received)); };
    opener->helper->onEnd = [this, opener] { ended(opener); };
    return true;
}

void FileHelpers::pump()
{
    for (auto next = nextQuestion(); next != waiting.end(); next = nextQuestion()) {
        auto opener = std::ranges::find_if(openers, [](const Opener &one) { return !one.question; });
        if (opener == openers.end()) {
            // One helper is as fast as several, unless it waits for a file system.
            if (std::ranges::any_of(openers, [](const Opener &one) { return !one.isLate; }))
                return;
            if (openers.size() >= kMostOpeners) {
                giveUpOldest();
                continue;
            }
            if (!startOpener())
                break;
            opener = std::prev(openers.end());
        }
        Question question = std::move(*next);
        waiting.erase(next);
        give(*opener, std::move(question));
    }
    if (!openers.empty() || waiting.empty())
        return;
    // The program is missing, or the system has no room for another process.
    failLater(std::exchange(waiting, {}));
}

void FileHelpers::failLater(std::deque<Question> questions)
{
    mainQueue.async([given = std::make_shared<std::deque<Question>>(std::move(questions)),
                     stillThere = std::weak_ptr<bool>(alive)] {
        if (stillThere.expired())
            return;
        for (const Question &question : *given)
            question.reply(nullptr);
    });
}

void FileHelpers::give(Opener &opener, Question question)
{
    std::vector<int> descriptors;
    for (const auto &descriptor : question.descriptors)
        descriptors.push_back(descriptor->get());
    const bool isSent = opener.helper->send(question.message, descriptors);
    opener.question = std::move(question);
    opener.turn = ++lastTurn;
    if (!isSent) {
        mainQueue.async([this, at = &opener, turn = lastTurn, stillThere = std::weak_ptr<bool>(alive)] {
            if (stillThere.expired())
                return;
            for (const Opener &one : openers) {
                if (&one == at && one.turn == turn) {
                    ended(at);
                    return;
                }
            }
        });
        return;
    }
    mainQueue.after(kLate, [this, at = &opener, turn = lastTurn, stillThere = std::weak_ptr<bool>(alive)] {
        if (!stillThere.expired())
            noteLate(at, turn);
    });
}

void FileHelpers::noteLate(const Opener *late, quint64 turn)
{
    const auto opener = std::ranges::find_if(openers, [late](const Opener &one) { return &one == late; });
    if (opener == openers.end() || opener->turn != turn || !opener->question)
        return;
    opener->isLate = true;
    std::vector<std::function<void()>> notes;
    if (opener->question->late)
        notes.push_back(std::exchange(opener->question->late, nullptr));
    for (Question &question : waiting) {
        if (question.late && question.folder == opener->question->folder)
            notes.push_back(std::exchange(question.late, nullptr));
    }
    for (const auto &note : notes)
        note();
    pump();
}

void FileHelpers::answered(const Opener *from, Received &&received)
{
    const auto opener = std::ranges::find_if(openers, [from](const Opener &one) { return &one == from; });
    if (opener == openers.end() || !opener->question)
        return;
    const Question question = std::move(*opener->question);
    opener->question.reset();
    opener->isLate = false;
    MessageReader reply(received.bytes);
    question.reply(&reply);
    armIdle();
    pump();
}

void FileHelpers::ended(const Opener *which)
{
    const auto opener = std::ranges::find_if(openers, [which](const Opener &one) { return &one == which; });
    if (opener == openers.end())
        return;
    const std::optional<Question> question = std::move(opener->question);
    openers.erase(opener);
    if (question)
        question->reply(nullptr);
    pump();
}

// Gives up the question that has waited longest, and all others for the same folder.
void FileHelpers::giveUpOldest()
{
    const auto oldest = std::ranges::min_element(openers, {}, &Opener::turn);
    std::deque<Question> given;
    given.push_back(std::move(*oldest->question));
    openers.erase(oldest);
    for (auto question = waiting.begin(); question != waiting.end();) {
        if (question->folder == given.front().folder) {
            given.push_back(std::move(*question));
            question = waiting.erase(question);
        } else {
            ++question;
        }
    }
    failLater(std::move(given));
}

void FileHelpers::armIdle()
{
    if (idle)
        idle->invalidate();
    idle = mainQueue.after(kIdle, [this, stillThere = std::weak_ptr<bool>(alive)] {
        if (stillThere.expired())
            return;
        std::erase_if(openers, [](const Opener &opener) {
            if (!opener.question)
                opener.helper->retire();
            return !opener.question;
        });
        if (keeper && beingKept == 0) {
            keeper->retire();
            keeper.reset();
        }
    });
}
