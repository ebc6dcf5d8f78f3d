#pragma once

#include "cmpath.h"
#include "cmreply.h"
#include "cmworker.h"
#include "tarnroles.h"
#include "tarnrowsroles.h"

#include <QList>
#include <QQueue>
#include <QSet>
#include <QString>
#include <QStringList>

class SimulatedStreamer;

// Walks the whole tree below a worker's root as a user interface and a
// player do: each listing page by page from its first row, each redirect
// and service node followed, each playable row fetched back by its own path
// and played through the stand-in player. Whatever goes wrong is kept with
// the path, the request and what came back, so that a person can retrace it.
class Crawler
{
public:
    struct Problem
    {
        QString path;
        QString request;
        QString result;
    };

    struct Play
    {
        QString id;
        QString path;
        QString serviceId;
        QString uri;     // the stream played; empty when it failed
        QString failure; // the player's words when it failed
    };

    struct Setup
    {
        CMPath root;
        // Where the nodes that stand for services live: "services:deezer".
        CMPath servicePrefix;
        // Node paths of forms and messages: a redirect there opens a dialog.
        QList<CMPath> dialogPrefixes;
        int pageSize = 25;
        // Every stream that plays must lie below this URL.
        QString mediaUrl;
        // A guard against a reply that never comes, not a budget: a loaded
        // machine or an emulator may take long over one.
        int timeoutMs = 60000;
        // The account a person would type into a service's login form, or
        // into the login page of a service that logs in on its own page;
        // without one, login dialogs are skipped as other dialogs are.
        QString user;
        QString password;
        // The node told of the end of a login on a service's own page, and
        // the address of the client's web server that the service's page
        // sends the browser back to.
        CMPath oauthPath;
        QString returnAddress;
        // The CAs the person's browser trusts, for a cloud over HTTPS; the
        // system's without a file.
        QString caCertificates;
        // A person who also opens every row's context menu and presses its
        // actions (likes, favourites), and fills every other form with this
        // text and sends it (searches); without one, both are left alone.
        QString anyText;
    };

    // What a person with the simulated cloud's test account does below a
    // worker's root: logs in, opens every dialog the crawl knows.
    static Setup forWorker(CMWorker const* worker, QString const& cloudBaseUrl);

    Crawler(Setup const& setup, SimulatedStreamer* streamer);

    void run();

    QList<Problem> const& problems() const { return m_problems; }
    QList<Play> const& plays() const { return m_plays; }
    // Paths listed, in the order they were.
    QStringList const& listings() const { return m_listings; }
    // Paths that answered with a form or a message instead of a listing.
    QStringList const& dialogs() const { return m_dialogs; }
    // Ids of program rows, which the player hands to the module's play
    // logic; they are among the plays too.
    QStringList const& programs() const { return m_programs; }
    // Services logged in to through their login forms or pages.
    QStringList const& logins() const { return m_logins; }
    int rowCount() const { return m_rowCount; }
    int redirectCount() const { return m_redirectCount; }

private:
    void list(CMPath const& path);
    bool isDialog(CMPath const& path, TarnRowsRoles const& page);
    void answerDialog(CMPath const& listing, CMPath const& dialog);
    void logIn(CMPath const& listing, QString const& service, TarnRowsRoles const& form);
    void logInOnPage(CMPath const& listing, QString const& service, TarnRowsRoles const& message);
    bool wait(CMVoidReply const& reply, CMPath const& path, QString const& request);
    void visitRow(CMPath const& listing, QString const& request, TarnRoles const& row, bool inRoot);
    void enqueue(CMPath const& path);
    void fetchBack(TarnRoles const& row);
    void openContext(TarnRoles const& row);
    void send(CMPath const& listing, TarnRowsRoles const& form);
    QStringList const& listingRoles() const;
    void play(TarnRoles const& row);
    void problem(CMPath const& path, QString const& request, QString const& result);

    Setup m_setup;
    SimulatedStreamer* m_streamer;
    QQueue<CMPath> m_queue;
    QSet<QString> m_seen;
    QList<Problem> m_problems;
    QList<Play> m_plays;
    QStringList m_listings;
    QStringList m_dialogs;
    QStringList m_programs;
    QStringList m_logins;
    int m_rowCount = 0;
    int m_redirectCount = 0;
};
