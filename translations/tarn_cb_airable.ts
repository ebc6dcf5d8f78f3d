<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE TS>
<TS version="2.1" sourcelanguage="en_US">
    <context>
        <name>AirableConnect::handleAuthenticateResult(const HttpClientResult&amp;)</name>
        <message>
            <source>Failed to authenticate!</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AirableConnect::handleSendResult(const Request&amp;, const HttpClientResult&amp;)</name>
        <message>
            <source>Failed reset!</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AirableOAuth::setDataRequest(const CMSetDataRequest&amp;)</name>
        <message>
            <source>Unsupported role</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AirableProgramPlayLogic::handleRatingResponse(const CMReply&lt;AirableConnect::Reply&gt;&amp;, CMReply&lt;QVariant&gt;, long int, TarnRatingThreeStateValues::Enum)</name>
        <message>
            <source>Rating Message</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AirableProgramPlayLogic::handleTrackResponse(const CMReply&lt;AirableTrackResponse&gt;&amp;, int)</name>
        <message>
            <source>Subscribe</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Subscribe to Deezer Premium to get unlimited skips</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AirableProgramPlayLogic::likeInternal(const CMSetDataRequest&amp;)</name>
        <message>
            <source>Not supported for current playback</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AirableProgramPlayLogic::on_controlQueue_control(ControlQueue::ControlCommand, const QVariant&amp;)</name>
        <message>
            <source>Invalid command</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>No program is playing</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AirableProgramPlayLogic::playInternal(const CMSetDataRequest&amp;, const TarnPlayLogicPlayArgs&amp;)</name>
        <message>
            <source>Could not start audio</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Unsupported service</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AirableTrackRetriever::next(CMReply&lt;AirableTrackResponse&gt;)</name>
        <message>
            <source>Skip limit reached</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>AmazonMusicTrackRetriever::on_programFetched(const CMVoidReply&amp;)</name>
        <message>
            <source>Failed to get valid item</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Invalid response from server</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::getDataRequest(const CMGetDataRequest&amp;)</name>
        <message>
            <source>Actions</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::handleContextMenu(const CMGetRowsRequest&amp;, const QList&lt;ContextAction&gt;&amp;, const QList&lt;TarnRoles&gt;&amp;)</name>
        <message>
            <source>Actions</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::handleForm(const CMGetRowsRequest&amp;, portable::SmartPointer&lt;airable::AirableObject&gt;)</name>
        <message>
            <source>Internal airable error: not a form!</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::handleMessage(const CMGetRowsRequest&amp;, portable::SmartPointer&lt;airable::AirableObject&gt;)</name>
        <message>
            <source>Internal airable error: not a message!</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::on_getContentContextDone(const AirableConnect::Reply&amp;, const CMRequest&amp;, const QVariant&amp;)</name>
        <message>
            <source>ALBUM INFO</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>ARTIST INFO</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Couldn't cast object to item</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Couldn't parse data from request</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>TRACK INFO</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::on_gettingTrackDone(const AirableConnect::Reply&amp;, const CMRequest&amp;, const QVariant&amp;)</name>
        <message>
            <source>Can't retrive track from server</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>We are not logged in service or something</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::on_redirectDone(const AirableConnect::Reply&amp;, const CMRequest&amp;, const QVariant&amp;)</name>
        <message>
            <source>Can't retrieve track from server</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Playback Url is empty</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Unsupported encryption type</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::on_setDataRequest(CMSetDataRequest)</name>
        <message>
            <source>Input field validation error!</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Internal airable error: wrong form index!</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::resumePausedPlayback(const TarnUrl&amp;, const CMSetDataRequest&amp;)::&lt;lambda(const AirableConnect::Reply&amp;)&gt;</name>
        <message>
            <source>Failed to resume playback!</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::sendRequest(const CMRequest&amp;, const char*, QObject*, const QVariant&amp;)</name>
        <message>
            <source>Internal error, invalid url: %1</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>Internal error, missing serviceType, dataType or objectId</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::setStandardErrorMessage(const CMGetRowsRequest&amp;)</name>
        <message>
            <source>Error during communication with server</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::setStandardErrorMessage(const CMRequest&amp;)</name>
        <message>
            <source>Error during communication with server</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>CMAirableWorker::submitMessage(const CMSetDataRequest&amp;)</name>
        <message>
            <source>Internal airable error: wrong index!</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>DeezerTrackRetriever::getTrack()</name>
        <message>
            <source>Too many invalid items</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>DeezerTrackRetriever::on_programTracksFetched(const CMVoidReply&amp;)</name>
        <message>
            <source>Invalid response from server</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>No tracks present in program</source>
            <translation type="unfinished"/>
        </message>
    </context>
    <context>
        <name>airable</name>
        <message>
            <source>Create account</source>
            <translation type="unfinished"/>
        </message>
        <message>
            <source>FREE TRIAL</source>
            <translation type="unfinished"/>
        </message>
    </context>
</TS>
