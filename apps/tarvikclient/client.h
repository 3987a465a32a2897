// One connection attempt to the gateway.
#pragma once

#include "base/thread.h"
#include "curl/requestinfo.h"
#include "tarvikclient/clientconfiguration.h"
#include "tarvikclient/clientnotify.h"
#include "tarvikclient/gatewayconsent.h"
#include "tarvikclient/leftsession.h"
#include "tarvikclient/policy.h"
#include "tarvikclient/sessionaudit.h"
#include "tarvikclient/sessionfailure.h"
#include "tarvikclient/sessionmark.h"
#include "tarvikclient/signeddll.h"
#include "tarvikclient/subclient.h"
#include "tarvikclient/subclienthost.h"
#include "tarvikclient/systemproxy.h"

namespace quillon {

/// The client cannot be made.
class ETarvikClient : public Exception {
    using Exception::Exception;
};

/// Takes a launch URL through the whole session on a thread of its own: asks the mediation service what to
/// do, makes the sub-client for it and runs that. Made once, on the interface's thread; making it
/// sends the log to its file and makes the user's data directory the current one.
///
/// run(), restart(), stop(), cancel(), showLogs(), isRunning(), join(), getMediation(), getFailure(),
/// getConnectError() and allowsCertificateExceptions() may be called on any thread. Destroying the client
/// neither stops nor joins its thread: the owner does both before. It ends downloads that modules still have
/// under way and waits for them, about a second.
class TarvikClient final : public ClientConfigurationDispatcher, public Thread, public ISubClientHost {
public:
    /// The client's version, as the gateway is told it and the user is shown it.
    static constexpr char version[] = "8.2.0.21";
    /// Where all log lines go, or to a file of the same name in the data directory when what stands here is
    /// not this user's own plain file; the console knows which.
    static constexpr char logPath[] = "/tmp/tarvikclient.log";

    /// `notify` must outlive the client's thread. Throws NullException without a console, EFile or
    /// ETarvikClient when the data directory cannot be used. A settings file that cannot be read keeps
    /// nothing from being made; the settings know.
    ///
    /// `consent`, which outlives the client's thread too, is asked where the policy says so; without one the
    /// answer is no. `audit` takes one line for each session.
    explicit TarvikClient(ITarvikClientNotify& notify, IGatewayConsent* consent = nullptr,
                          SessionAudit::Sink const& audit = &SessionAudit::toSystemLog);
    ~TarvikClient() override;

    /// Stores the launch URL and starts the thread; starts nothing and returns false while it is running,
    /// also when that session has been cancelled.
    bool run(String const& url);
    /// Stops the sub-client, if there is one, and starts the thread again with the stored URL unless it is
    /// still running.
    void restart();
    /// Asks the sub-client, if there is one, to end its work, and withdraws a question to the user. Does not
    /// wait for the thread.
    void stop();
    /// stop(), and nothing that the session waits for on the network keeps it: transfers under way are cut
    /// off within about a second, later ones fail at once, and no module is started any more, until run() or
    /// restart() starts the thread again. Whatever it was at, the session ends with status 4, unless it had
    /// already failed. A module that is in one of its own calls is waited for. Does not wait for the thread.
    void cancel();
    void showLogs();
    /// Waits for the thread, `timeoutMs` milliseconds at most; false when it is still running then. An owner
    /// who cannot wait longer keeps the client and lets the process end, which waits five seconds more.
    bool join(unsigned long timeoutMs = noLimit) { return Thread::join(timeoutMs); }

    /// Whether requests go through the proxy that the desktop names.
    bool usesSystemProxy() const noexcept { return m_systemProxy.isUsed(); }
    /// Is written with the settings.
    void useSystemProxy(bool used) noexcept { m_systemProxy.use(used); }

    /// What the session before this client's left behind that did not end in order; found when the client is
    /// made, and told once.
    std::optional<LeftSession> const& leftSession() const noexcept { return m_leftSession; }

    /// Host, and port if there is one, of the gateway of the last run.
    String getMediation() const override;
    /// What the last onFatalError() was about; nothing since a session has started.
    SessionFailure getFailure() const;
    /// What the last onConnectError() was about; no transfer since a session has started.
    RequestInfo getConnectError() const;
    /// Whether the policy of the last session lets the user's list of hosts without certificate checks count.
    bool allowsCertificateExceptions() const;
    String getLocalConfPath() const;
    /// Throws EFile when the settings cannot be written.
    void saveLocalConfiguration();
    ClientLocalConfiguration& getLocalConfiguration() noexcept { return m_localConfiguration; }

    /// The "lang" parameter of a launch URL, or the empty string.
    static String getLangFromArg(String const& url);
    /// Returns when the module is the publisher's; throws EBadSignature otherwise. Nothing of the module has
    /// been loaded before.
    static void verifyDllSignature(String const& modulePath, String const& sigPath);

    // The client thread: what a sub-client asks for.
    Credentials getProxyCredentials() const override { return m_localConfiguration.getProxyCredentials(); }
    Policy const& policy() const noexcept override { return *m_policy; }
    std::unique_ptr<VerifiedModule> verifyModule(String const& path, char const* kind) override;

    // The client thread: a configuration's call back.
    void dispatch(ClientHostcheckerDllConfiguration& configuration) override;
    void dispatch(ClientPluginDllConfiguration& configuration) override;
    void dispatch(NoTunnelClientPluginDllConfiguration& configuration) override;

    /// The thread's body: one pass from the launch URL to the end of the sub-session.
    void main() override;

private:
    template <class SubClient, class Configuration>
    void setSubClient(ClientType type, Configuration& configuration);
    std::unique_ptr<ISubClient> takeSubClient();
    void abandonSubClient();
    bool start();
    void stopWork();
    void readSettings();

    void pass();
    void session();
    void applyPolicy();
    bool mayBegin();
    GatewayQuestion::Answer askUser(http::HostPort const& gateway);
    bool refuseGateway(FailureKind kind, char const* outcome, char const* reason);
    bool endedByOrder();
    void notifyFailure();
    bool loadConfiguration();
    String prepareRequest();
    void installCookie(String const& host, String const& userInfo);
    void runSubClient();

    std::optional<LeftSession> m_leftSession; // constant once the client is made
    // Interface thread at construction, any thread afterwards; synchronised in themselves.
    ClientLocalConfiguration m_localConfiguration;
    // Client thread.
    gc::Pointer<ClientConfiguration> m_configuration;
    std::shared_ptr<Policy const> m_policy = std::make_shared<Policy const>();
    SessionAudit m_audit;
    SessionMark m_mark;
    SessionFailure m_failing; // what a failure would be about now
    bool m_isModuleMissing = false;
    IGatewayConsent* const m_consent;
    SystemProxy m_systemProxy; // any thread, but outlives the session that asks it
    // Any thread, synchronised in itself: modules fetch on threads of their own, and orders reach the HTTPS
    // session in it.
    DownloadManager m_downloadManager;
    // Client thread.
    ITarvikClientNotify& m_notify;
    // Whoever starts the thread: one start at a time.
    Mutex m_startMutex;
    // Any thread, under the mutex. The client thread alone sets and clears the sub-client.
    mutable Mutex m_mutex;
    String m_url;
    std::unique_ptr<ISubClient> m_subClient;
    std::shared_ptr<GatewayQuestion> m_question; // while it is open
    String m_mediation;
    SessionFailure m_failure;
    RequestInfo m_connectError;
};

} // namespace quillon
