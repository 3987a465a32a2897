/* The C boundary between the Tarvik client and the modules that it downloads and loads.
 *
 * A module is a shared library that exports either every function of the section "Plug-in modules" or every
 * function of the section "Host-checker modules". The client refuses to load a module that lacks one of
 * them, and a module whose publisher's signature (made with tarvik-signmodule, beside the module as
 * MODULE.sig) does not verify.
 *
 * What holds for every function here:
 *
 * - Text is UTF-8 and ends with a NUL character. An argument is never null; it belongs to the client and is
 *   valid during the call only, so a module copies what it wants to keep.
 * - The client makes every call from one thread, the one that runs the session, one call at a time. A module
 *   may start threads of its own, but must not expect to be called on them. A call that blocks holds up the
 *   session, and with it the user's "disconnect".
 * - No exception may leave a function: in C++ the functions are declared noexcept, so that one that would
 *   get out ends the process where it was thrown instead of corrupting the client's stack.
 * - "Ignored" functions return void: the client looks at no result. A plug-in reports trouble through its
 *   status lines, DllGetErrors2.
 * - The client unloads the module (dlclose) when the session is over. Every thread of the module must have
 *   ended by then, and nothing may keep the address of one of its functions (signal handlers, atexit). A
 *   session that fails, or a process that ends, may leave the module loaded and not stopped: what must not
 *   outlive the process (routes, resolver settings) needs a cleaning-up of its own.
 */
#ifndef TARVIK_MODULE_H
#define TARVIK_MODULE_H

#include <stdbool.h>

/* Marks an export: seen by the loader although the rest of the module is built with hidden symbols. */
#ifdef __cplusplus
#define TARVIK_MODULE_EXPORT extern "C" __attribute__((visibility("default")))
#define TARVIK_MODULE_NOEXCEPT noexcept
#else
#define TARVIK_MODULE_EXPORT __attribute__((visibility("default")))
#define TARVIK_MODULE_NOEXCEPT
#endif

/* The values of "code" in the status lines of a plug-in, see DllGetErrors2. Other values are ignored. */
enum {
    /* A status line: "status" is the text to show, its first word the state of the connection. */
    TARVIK_CODE_STATUS = 5,
    /* The plug-in asks to be stopped: "reason" says why, and how soon. */
    TARVIK_CODE_CLOSE_REQUEST = 8
};

/* Fetches a file with the session of the client: its cookies, its proxy, its certificate policy.
 *
 * url: absolute (http or https), or a path such as "/files/x", which is fetched from the gateway over HTTPS.
 * path: where the content goes; missing directories are made, an existing file is overwritten.
 * Both belong to the caller; neither is modified.
 *
 * True when the whole file arrived with status 200. False for everything else; a partly written file may
 * then be left at the path. The call blocks until the transfer is over. It may be made from any thread of
 * the module between DllSetDownloadDelegate2 and the return of DllStop2.
 */
typedef bool (*TarvikDownloadDelegate)(char* url, char* path);

/* ---- Plug-in modules -------------------------------------------------------------------------------------
 *
 * The order of a session with a tunnel: DllCreatePluginFrontal, DllSetDllVersion2, DllSetPluginDir2,
 * DllSetProxy2, the setters from DllSetLogin2 to DllSetDownloadDelegate2 in the order in which they stand
 * below, DllStart2, DllSetProxy2 again; then DllGetErrors2 every 500 ms; last DllStop2.
 * Without a tunnel: DllCreatePluginFrontal, DllSetDllVersion2, DllSetPluginDir2, DllSetDownloadDelegate2,
 * LaunchSafeResource, and the module is unloaded: neither DllStart2 nor DllStop2 is called.
 */

/* Makes the plug-in's front end and returns the handle that every other function receives as "instance".
 * The handle belongs to the module; the client only passes it back. Null means failure: the client unloads
 * the module, calls nothing more and ends the session. */
TARVIK_MODULE_EXPORT void* DllCreatePluginFrontal(void) TARVIK_MODULE_NOEXCEPT;

/* The module's version, as the gateway named it. */
TARVIK_MODULE_EXPORT void DllSetDllVersion2(void* instance, const char* version) TARVIK_MODULE_NOEXCEPT;

/* Absolute path, without a trailing "/", of the directory that holds the module. It belongs to the user,
 * outlives the session, and the module may write there. */
TARVIK_MODULE_EXPORT void DllSetPluginDir2(void* instance, const char* directory) TARVIK_MODULE_NOEXCEPT;

/* The user's login at the gateway. */
TARVIK_MODULE_EXPORT void DllSetLogin2(void* instance, const char* login) TARVIK_MODULE_NOEXCEPT;

/* The user's organisation. */
TARVIK_MODULE_EXPORT void DllSetOrganization2(void* instance,
                                              const char* organization) TARVIK_MODULE_NOEXCEPT;

/* The gateway that the launch URL named: HOST or HOST:PORT. */
TARVIK_MODULE_EXPORT void DllSetHostname2(void* instance, const char* hostname) TARVIK_MODULE_NOEXCEPT;

/* The server to connect to, in the form that the gateway and the module have agreed on. */
TARVIK_MODULE_EXPORT void DllSetServer2(void* instance, const char* server) TARVIK_MODULE_NOEXCEPT;

/* The client's identifier at the gateway. */
TARVIK_MODULE_EXPORT void DllSetSuffix2(void* instance, const char* suffix) TARVIK_MODULE_NOEXCEPT;

/* The ticket that authenticates the connection. A secret: keep it out of logs and files. */
TARVIK_MODULE_EXPORT void DllSetTicket2(void* instance, const char* ticket) TARVIK_MODULE_NOEXCEPT;

/* The identifier of the session at the gateway. A secret, like the ticket. */
TARVIK_MODULE_EXPORT void DllSetSessionId2(void* instance, const char* sessionId) TARVIK_MODULE_NOEXCEPT;

/* Absolute path of the directory that holds the two certificate files below. */
TARVIK_MODULE_EXPORT void DllSetCertDirectory2(void* instance, const char* directory) TARVIK_MODULE_NOEXCEPT;

/* Name, in the certificate directory, of the client's certificate and key. */
TARVIK_MODULE_EXPORT void DllSetCertFileName2(void* instance, const char* fileName) TARVIK_MODULE_NOEXCEPT;

/* Name, in the certificate directory, of the certificate authority. */
TARVIK_MODULE_EXPORT void DllSetCaFileName2(void* instance, const char* fileName) TARVIK_MODULE_NOEXCEPT;

/* The password of the client's key. A secret. */
TARVIK_MODULE_EXPORT void DllSetCertPassword2(void* instance, const char* password) TARVIK_MODULE_NOEXCEPT;

/* The function with which the module fetches files. It stays valid until DllStop2 has returned. */
TARVIK_MODULE_EXPORT void DllSetDownloadDelegate2(void* instance,
                                                  TarvikDownloadDelegate delegate) TARVIK_MODULE_NOEXCEPT;

/* The proxy to connect through, as seven fields with "|" between them:
 *     enabled|type|host|login|password|domain|save:no
 * "enabled" is 1 or 0; fields may be empty; nothing is escaped, so a "|" inside a value cannot be told from
 * a separator. The password is a secret. Called before and after DllStart2, with the same text. */
TARVIK_MODULE_EXPORT void DllSetProxy2(void* instance, const char* proxy) TARVIK_MODULE_NOEXCEPT;

/* The module's log text. Never null. The text belongs to the module; the client copies it and hands it back
 * through DllReleaseStr exactly once, an empty one too. */
TARVIK_MODULE_EXPORT char* DllGetLogs2(void* instance) TARVIK_MODULE_NOEXCEPT;

/* A command of the module's own: the client passes the three texts and the result through and gives them no
 * meaning. The session itself does not call it. */
TARVIK_MODULE_EXPORT int DllExecute2(void* instance, const char* first, const char* second,
                                     const char* third) TARVIK_MODULE_NOEXCEPT;

/* What has happened since the last call, as a JSON array of objects; "[]" when nothing has. Called every
 * 500 ms; return at once. Never null and never anything but an array: the client ends the session with a
 * fatal error when it cannot read the text. Ownership is that of DllGetLogs2.
 *
 * Every value is a JSON string, the numbers too:
 *
 *     {"code":"5","status":"connected ip=10.8.0.2"}
 *         A status line. It is shown by its beginning: init, authenticating, reconnecting, getconfig,
 *         authError, connected (the text after "ip=" is shown as the user's address). Once a status line
 *         was seen, a call without one is shown as "stopped": repeat the line for as long as it holds.
 *
 *     {"code":"8","reason":"1"}
 *         Close request. Reasons 1, 2 and 4: stop at once. Any other reason: stop when six calls in a row
 *         (three seconds) carried a close request; one call without it withdraws the request.
 */
TARVIK_MODULE_EXPORT char* DllGetErrors2(void* instance) TARVIK_MODULE_NOEXCEPT;

/* Starts the connection and returns without waiting for it. Called once. */
TARVIK_MODULE_EXPORT void DllStart2(void* instance) TARVIK_MODULE_NOEXCEPT;

/* Ends the connection, and every thread of the module before it returns. After it the instance is used no
 * more, so this is where to free it; only DllReleaseStr may still be called. */
TARVIK_MODULE_EXPORT void DllStop2(void* instance) TARVIK_MODULE_NOEXCEPT;

/* Takes back a text that DllGetLogs2 or DllGetErrors2 returned; the client never frees one itself. May be
 * called after DllStop2. */
TARVIK_MODULE_EXPORT void DllReleaseStr(char* text) TARVIK_MODULE_NOEXCEPT;

/* Opens a resource that needs no tunnel. "id" is the kind of the resource and "text" the resource, both as
 * the gateway gave them. The result ends the session whatever it is; 0 means success by convention. */
TARVIK_MODULE_EXPORT int LaunchSafeResource(void* instance, int id, const char* text) TARVIK_MODULE_NOEXCEPT;

/* ---- Host-checker modules --------------------------------------------------------------------------------
 *
 * The order of a session: InitHostCheckerDll, GetValidRules once per round, CloseHostCheckerDll.
 */

/* Prepares the checks. The first two texts are always empty. "directory" ends with "/", belongs to the user
 * and may be written to; "hostname" and "language" are the gateway's. Returns 0 for success by convention;
 * the client goes on whatever the result is. */
TARVIK_MODULE_EXPORT int InitHostCheckerDll(const char* reserved1, const char* reserved2,
                                            const char* directory, const char* hostname,
                                            const char* language) TARVIK_MODULE_NOEXCEPT;

/* The last call of a session: frees everything. */
TARVIK_MODULE_EXPORT void CloseHostCheckerDll(void) TARVIK_MODULE_NOEXCEPT;

/* Checks the machine against the gateway's request and returns the rules that it satisfies, in a form that
 * gateway and module have agreed on; the client posts the text to the gateway as it is. Never null. The text
 * belongs to the module, stays valid until the next call into it, and is not handed back: the client copies
 * it at once. */
TARVIK_MODULE_EXPORT char* GetValidRules(const char* request) TARVIK_MODULE_NOEXCEPT;

#endif
