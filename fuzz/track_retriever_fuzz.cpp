// Any bytes as the cloud's answers to a program's track retriever: the
// bytes are split at zero bytes into answers, and the retriever is driven
// as the play logic drives it, one command at a time. Each answer goes to
// the oldest request the retriever has sent and not had answered, as the
// cloud would answer it; nothing leaves the process.
#include "module_support.h"

#include "amazonmusictrackretriever.h"
#include "deezertrackretriever.h"

#include <QQueue>

#include <memory>

namespace {

class Cloud : public AirableConnect
{
public:
    using AirableConnect::AirableConnect;

    CMReply<Reply> send(TarnUrl const& url, int) override
    {
        CMReply<Reply> reply;
        sent.enqueue(qMakePair(url, reply));
        return reply;
    }

    // Answers the oldest request with the next answer; false when none is
    // waiting or no answer is left.
    bool answer(QList<QByteArray>* answers)
    {
        if (sent.isEmpty() || answers->isEmpty())
            return false;
        auto const request = sent.dequeue();
        QByteArray const body = answers->takeFirst();
        Reply reply;
        reply.url = request.first;
        reply.statusCode = 200;
        reply.object = fuzzsupport::parse(body);
        reply.data = body;
        request.second.setValue(reply);
        return true;
    }

    QQueue<QPair<TarnUrl, CMReply<Reply>>> sent;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static Cloud* const cloud = new Cloud(fuzzsupport::worker()->config());
    if (size == 0)
        return 0;
    QList<QByteArray> answers = fuzzsupport::bytes(data + 1, size - 1).split('\0');
    TarnUrl const program = TarnUrl::fromEncoded(QByteArrayLiteral("http://127.0.0.1:9/program"));
    std::unique_ptr<AirableTrackRetriever> retriever;
    if (data[0] & 1)
        retriever.reset(new AmazonMusicTrackRetriever(cloud, program));
    else
        retriever.reset(new DeezerTrackRetriever(cloud, program));

    // A command is answered once the requests it waits for are.
    auto const settled = [&](CMReply<AirableTrackResponse> const& command) {
        while (!command.isFinished() && cloud->answer(&answers)) {
        }
        return command.isFinished();
    };
    if (settled(retriever->getFirstTrack())) {
        retriever->playbackStarted();
        for (int round = 0; round < 8 && !answers.isEmpty(); ++round) {
            (void)retriever->availableControls();
            (void)retriever->skipLimitReached();
            CMReply<AirableTrackResponse> const command =
                round % 3 == 0 ? retriever->prepareNextTrack()
                               : (round % 3 == 1 ? retriever->getNextTrack() : retriever->getPreviousTrack());
            if (!settled(command))
                break;
            retriever->playbackStarted();
        }
    }
    // Late answers reach a retriever that moved on, or none at all.
    while (cloud->answer(&answers)) {
    }
    retriever.reset();
    cloud->sent.clear();
    fuzzsupport::settle();
    return 0;
}
