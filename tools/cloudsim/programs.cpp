#include "programs.h"

#include "cloudjson.h"

#include <QRegularExpression>

namespace cloudsim {

namespace {

int const FlowBatch = 5;
int const StationPageTracks = 3;
// The one track whose rating the cloud refuses.
QString const UnratableTrack = "dz-fl3";

struct Song
{
    char const* title;
    char const* artist;
    char const* album;
};

// What the tracks of one service's program are made of.
struct Station
{
    QString service;
    QString prefix; // of track ids: "dz-fl" + number
    QString codec;
    int bitrate;
    QString extension;
    bool encrypted;
    QList<Song> songs;

    QString trackId(int number) const { return prefix + QString::number(number); }
    Song song(int number) const { return songs.at((number - 1) % songs.size()); }
    QString base(QString const& path) const { return "{base}/" + service + path; }
};

rapidjson::Value images(QString const& name, rapidjson::Document::AllocatorType& alloc)
{
    rapidjson::Value list(rapidjson::kArrayType);
    for (int size : {100, 300, 600}) {
        QString const file = size == 600 ? name : QString("%1-%2").arg(name).arg(size);
        rapidjson::Value image(rapidjson::kObjectType);
        image.AddMember("url", text("{base}/images/" + file + ".svg", alloc), alloc);
        image.AddMember("width", size, alloc).AddMember("height", size, alloc);
        list.PushBack(image, alloc);
    }
    return list;
}

QString slug(char const* words)
{
    return QString::fromUtf8(words).toLower().replace(QRegularExpression("[^a-z0-9]+"), "-");
}

} // namespace

Programs::Programs(Catalogue const& catalogue, Accounts const& accounts, SkipLimits& skips)
    : mCatalogue(catalogue), mAccounts(accounts), mSkips(skips)
{
}

QString Programs::rating(QString const& listener, QString const& trackId) const
{
    std::lock_guard<std::mutex> lock(mMutex);
    return mRatings.value(listener + '/' + trackId, "neutral");
}

namespace {

rapidjson::Value trackObject(Station const& s, int number, QString const& rating,
                             rapidjson::Document::AllocatorType& alloc)
{
    QString const id = s.trackId(number);
    Song const song = s.song(number);
    QString const albumId = s.prefix + "-" + slug(song.album);
    rapidjson::Value track(rapidjson::kObjectType);
    track.AddMember("id", idArray(s.service, "track", id, alloc), alloc);
    track.AddMember("title", text(song.title, alloc), alloc);
    track.AddMember("url", text(s.base("/tracks/" + id), alloc), alloc);
    track.AddMember("duration", 150 + (number * 37) % 120, alloc);
    rapidjson::Value artist(rapidjson::kObjectType);
    artist.AddMember("id", idArray(s.service, "artist", s.prefix + "-" + slug(song.artist), alloc), alloc);
    artist.AddMember("title", text(song.artist, alloc), alloc);
    track.AddMember("artist", artist, alloc);
    rapidjson::Value album(rapidjson::kObjectType);
    album.AddMember("id", idArray(s.service, "album", albumId, alloc), alloc);
    album.AddMember("title", text(song.album, alloc), alloc);
    album.AddMember("images", images(albumId, alloc), alloc);
    track.AddMember("album", album, alloc);
    rapidjson::Value image(rapidjson::kObjectType);
    image.AddMember("url", text("{base}/images/" + albumId + ".svg", alloc), alloc);
    track.AddMember("image", image, alloc);

    rapidjson::Value codec(rapidjson::kObjectType);
    codec.AddMember("name", text(s.codec, alloc), alloc).AddMember("bitrate", s.bitrate, alloc);
    rapidjson::Value stream(rapidjson::kObjectType);
    stream.AddMember("id", idArray(s.service, "radio.stream", id, alloc), alloc);
    stream.AddMember("url", text(s.base("/streams/" + id), alloc), alloc);
    stream.AddMember("codec", codec, alloc);
    rapidjson::Value streams(rapidjson::kArrayType);
    streams.PushBack(stream, alloc);
    track.AddMember("streams", streams, alloc);

    rapidjson::Value actions(rapidjson::kArrayType);
    for (auto const& kind : {qMakePair(QString("positive"), QString("Like")),
                             qMakePair(QString("neutral"), QString("Remove rating")),
                             qMakePair(QString("negative"), QString("Dislike"))}) {
        rapidjson::Value action(rapidjson::kObjectType);
        action.AddMember("id", idArray(s.service, "action", "rate." + kind.first, alloc), alloc);
        action.AddMember("title", text(kind.second, alloc), alloc);
        action.AddMember("url", text(s.base("/tracks/" + id + "/rate/" + kind.first), alloc), alloc);
        action.AddMember("active", rating == kind.first, alloc);
        actions.PushBack(action, alloc);
    }
    track.AddMember("actions", actions, alloc);
    return track;
}

std::string redirectObject(Station const& s, int number)
{
    QString const id = s.trackId(number);
    rapidjson::Document redirect(rapidjson::kObjectType);
    auto& alloc = redirect.GetAllocator();
    redirect.AddMember("id", idArray(s.service, "redirect", id, alloc), alloc);
    redirect.AddMember("url", text("{base}/media/" + id + "." + s.extension, alloc), alloc);
    rapidjson::Value events(rapidjson::kObjectType);
    for (char const* word : {"start", "pause", "stop", "error"}) {
        events.AddMember(rapidjson::StringRef(word),
                         text(s.base(QString("/events/%1?stream=%2").arg(word, id)), alloc), alloc);
    }
    redirect.AddMember("events", events, alloc);
    rapidjson::Value content(rapidjson::kObjectType);
    content.AddMember("id", idArray(s.service, "track", id, alloc), alloc);
    content.AddMember("title", text(s.song(number).title, alloc), alloc);
    content.AddMember("url", text(s.base("/tracks/" + id), alloc), alloc);
    content.AddMember("images", images(s.prefix + "-" + slug(s.song(number).album), alloc), alloc);
    redirect.AddMember("content", content, alloc);
    if (s.encrypted) {
        rapidjson::Value keys(rapidjson::kArrayType);
        keys.PushBack("X-Licence-Device: cloudsim-device", alloc).PushBack("X-Licence-Token: c2ltdWxhdGVk", alloc);
        rapidjson::Value headers(rapidjson::kObjectType);
        headers.AddMember("key", keys, alloc);
        rapidjson::Value encryption(rapidjson::kObjectType);
        encryption.AddMember("type", "widevine", alloc).AddMember("headers", headers, alloc);
        redirect.AddMember("encryption", encryption, alloc);
    }
    return serialize(redirect);
}

std::string skipAnswer(int available)
{
    rapidjson::Document answer(rapidjson::kObjectType);
    auto& alloc = answer.GetAllocator();
    answer.AddMember("url", "{base}/deezer/flow/skip", alloc);
    answer.AddMember("status", "{base}/deezer/flow/skips", alloc);
    answer.AddMember("available", available, alloc);
    return serialize(answer);
}

Station const* station(QString const& service)
{
    static Station const deezer{"deezer", "dz-fl", "mp3", 320, "mp3", false,
                                          {{"Neon Rain", "Kofi Mensah-Berg", "Night Shifts"},
                                           {"Late Bus", "Kofi Mensah-Berg", "Night Shifts"},
                                           {"Sodium", "Kofi Mensah-Berg", "Night Shifts"},
                                           {"Four A.M.", "Kofi Mensah-Berg", "Night Shifts"},
                                           {"Glass Harbour", "Ines Valtonen", "Northern Lines"},
                                           {"Wool and Wire", "Ines Valtonen", "Northern Lines"},
                                           {"Small Hours", "The Lantern Choir", "Small Hours"},
                                           {"Paper Moon Radio", "The Lantern Choir", "Small Hours"},
                                           {"Tidal Clock", "Ayla Brenner", "Salt and Signal"},
                                           {"Signal Fire", "Ayla Brenner", "Salt and Signal"},
                                           {"Orchard Road", "Tomás Reyna", "Orchard Road"}}};
    static Station const amazon{"amazon", "am-st", "flac", 1411, "flac", true,
                                          {{"Morning Coffee", "Various", "Station Mix"},
                                           {"Open Road", "Various", "Station Mix"},
                                           {"Evening Glow", "Various", "Station Mix"},
                                           {"Linen", "Marguerite Osei", "Soft Furnishings"},
                                           {"Window Seat", "Marguerite Osei", "Soft Furnishings"},
                                           {"Slow Rain", "Hollis & Lane", "Weather Report"},
                                           {"Cloud Cover", "Hollis & Lane", "Weather Report"}}};
    if (service == "deezer")
        return &deezer;
    if (service == "amazon")
        return &amazon;
    return nullptr;
}

} // namespace

bool Programs::answer(QString const& behaviour, Call const& call, Answer* out)
{
    out->status = 200;
    if (behaviour == "deezer flow")
        out->body = flow(call);
    else if (behaviour == "deezer skip status" || behaviour == "deezer skip")
        out->body = skips(call, behaviour == "deezer skip");
    else if (behaviour == "amazon station")
        out->body = stationPage(call);
    else
        return false;
    return true;
}

bool Programs::answerTrack(Call const& call, Answer* out)
{
    static QRegularExpression const trackPath("^/(deezer|amazon)/tracks/(dz-fl|am-st)([1-9][0-9]{0,8})"
                                              "(?:/rate/(positive|neutral|negative))?$");
    static QRegularExpression const idPath("^/id/(deezer|amazon)/track/(dz-fl|am-st)([1-9][0-9]{0,8})$");
    static QRegularExpression const streamPath("^/(deezer|amazon)/streams/(dz-fl|am-st)([1-9][0-9]{0,8})$");
    // Only the tracks of programs the catalogue has.
    auto const program = [this](Station const* s) {
        return s && mCatalogue.hasBehaviour(s->service == "deezer" ? "deezer flow" : "amazon station");
    };
    QString const& path = call.path;
    out->status = 200;
    QRegularExpressionMatch match = streamPath.match(path);
    Station const* s = match.hasMatch() ? station(match.captured(1)) : nullptr;
    if (program(s) && s->prefix == match.captured(2)) {
        out->body = redirectObject(*s, match.captured(3).toInt());
        return true;
    }
    match = trackPath.match(path);
    if (!match.hasMatch())
        match = idPath.match(path);
    s = match.hasMatch() ? station(match.captured(1)) : nullptr;
    if (!program(s) || s->prefix != match.captured(2))
        return false;
    int const number = match.captured(3).toInt();
    QString const rateAs = match.captured(4);
    if (!rateAs.isEmpty()) {
        out->body = rate(call, s->service, s->trackId(number), rateAs);
        return true;
    }
    rapidjson::Document document;
    QString const given = rating(mAccounts.listener(call.device, s->service), s->trackId(number));
    out->body = serialize(trackObject(*s, number, given, document.GetAllocator()));
    return true;
}

std::string Programs::flow(Call const& call)
{
    Station const& s = *station("deezer");
    int first = 0;
    {
        std::lock_guard<std::mutex> lock(mMutex);
        int& next = mNextFlowTrack[call.device];
        next = qMax(next, 1);
        first = next;
        next += FlowBatch;
    }
    QString const user = mAccounts.userOf(call.device, s.service);
    rapidjson::Document program(rapidjson::kObjectType);
    auto& alloc = program.GetAllocator();
    program.AddMember("id", idArray(s.service, "program", "flow", alloc), alloc);
    program.AddMember("title", "Flow", alloc);
    program.AddMember("url", "{base}/deezer/flow", alloc);
    if (!mAccounts.user(user).premium) {
        rapidjson::Value skip(rapidjson::kObjectType);
        skip.AddMember("available", mSkips.available(user), alloc);
        skip.AddMember("status", "{base}/deezer/flow/skips", alloc);
        skip.AddMember("url", "{base}/deezer/flow/skip", alloc);
        program.AddMember("skip", skip, alloc);
    }
    QString const who = mAccounts.listener(call.device, s.service);
    rapidjson::Value entries(rapidjson::kArrayType);
    for (int n = first; n < first + FlowBatch; ++n)
        entries.PushBack(trackObject(s, n, rating(who, s.trackId(n)), alloc), alloc);
    rapidjson::Value content(rapidjson::kObjectType);
    content.AddMember("entries", entries, alloc);
    program.AddMember("content", content, alloc);
    return serialize(program);
}

std::string Programs::skips(Call const& call, bool use)
{
    QString const user = mAccounts.userOf(call.device, "deezer");
    if (mAccounts.user(user).premium)
        return R"({"id":["deezer","error","skip.unlimited"],"message":"Your account has no skip limit."})";
    return skipAnswer(use ? mSkips.use(user) : mSkips.available(user));
}

std::string Programs::stationPage(Call const& call)
{
    Station const& s = *station("amazon");
    int const page = call.page();
    QString const who = mAccounts.listener(call.device, s.service);
    rapidjson::Document program(rapidjson::kObjectType);
    auto& alloc = program.GetAllocator();
    program.AddMember("id", idArray(s.service, "program", "station.chill", alloc), alloc);
    program.AddMember("title", "Chill Station", alloc);
    program.AddMember("url", "{base}/amazon/stations/chill", alloc);
    rapidjson::Value entries(rapidjson::kArrayType);
    for (int n = page; n < page + StationPageTracks; ++n)
        entries.PushBack(trackObject(s, n, rating(who, s.trackId(n)), alloc), alloc);
    rapidjson::Value pagination(rapidjson::kObjectType);
    pagination.AddMember("next", text(QString("{base}/amazon/stations/chill?p=%1").arg(page + 1), alloc), alloc);
    if (page > 1)
        pagination.AddMember("prev", text(QString("{base}/amazon/stations/chill?p=%1").arg(page - 1), alloc), alloc);
    rapidjson::Value content(rapidjson::kObjectType);
    content.AddMember("entries", entries, alloc).AddMember("pagination", pagination, alloc);
    program.AddMember("content", content, alloc);
    return serialize(program);
}

std::string Programs::rate(Call const& call, QString const& service, QString const& id, QString const& value)
{
    if (id == UnratableTrack)
        return R"({"id":["deezer","error","rating.refused"],"message":"This track can't be rated right now."})";
    QString const who = mAccounts.listener(call.device, service);
    {
        std::lock_guard<std::mutex> lock(mMutex);
        mRatings.insert(who + '/' + id, value);
    }
    static QHash<QString, QPair<QString, QString>> const answers{
        {"positive", {"Like", "You like this track. More like it will follow."}},
        {"neutral", {"Remove rating", "The rating of this track is removed."}},
        {"negative", {"Dislike", "You won't hear this track again."}}};
    rapidjson::Document action(rapidjson::kObjectType);
    auto& alloc = action.GetAllocator();
    action.AddMember("id", idArray(service, "action", "rate." + value, alloc), alloc);
    action.AddMember("title", text(answers.value(value).first, alloc), alloc);
    action.AddMember("message", text(answers.value(value).second, alloc), alloc);
    action.AddMember("active", true, alloc);
    return serialize(action);
}

} // namespace cloudsim
