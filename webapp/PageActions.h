// PageActions.h: what a page asks of the shell by navigating to a URL of the scheme "tvk".
//
// The road of an action: the policy handler refuses the navigation and hands the URL to the
// parser, which hands name, status and response to the dispatcher, which calls one of the
// wa_web_action_ functions, all before the handler returns.
#pragma once

#include "util/Owned.h"

#include <webkit2/webkit2.h>

/// Handler of "decide-policy". TRUE: the decision is taken or left as it is; navigations proceed,
/// except that a URI beginning with "tvk://" is refused and, as long as the window's run lasts,
/// carried out as an action. FALSE, for
/// types other than navigation, new window and response, leaves it to WebKit.
gboolean wa_web_decide_policy_cb(WebKitWebView* view, WebKitPolicyDecision* decision,
    WebKitPolicyDecisionType type, void* data = nullptr) noexcept;

/// Takes an action URL apart, its query items "status" and "response" decoded, and carries the
/// action out; a URL without an action name does nothing.
void wa_web_action(const char* uri);

/// Carries out one action: "exit", "resize", "reload", "restart", "install" or "uninstall"; any
/// other name is only traced. Status and response may be null.
void wa_web_action(const char* action, const char* status, const char* response);

/// Keeps copies of status and response for the result file and ends the main loop.
void wa_web_action_Exit(const char* status, const char* response);

/// Resizes the window, at least 64 and at most the work area, and moves it back inside the work
/// area where it sticks out. See wa_resized() for `value` and `percent`; the reference is g_Size.
void wa_web_action_Resize(unsigned int value, unsigned int percent);

/// Loads the start page again or, when the URL query of the process arguments carries a redirect,
/// opens that in the desktop browser and ends the main loop.
void wa_web_action_Reload();

/// Starts the program anew with the process arguments and ends this process at once: no result
/// file, no release of the plug-in. Returns only when no process could be made.
void wa_web_action_Restart();

/// Runs the script `name` and waits for it; see wa_call_script().
void wa_web_action_Script(const char* name, unsigned char search);

/// New null-terminated array of copies of the process arguments, the array and each copy from
/// array-new; the caller releases it with wa_free_argument_copies().
char** wa_copy_argument_list();

/// Releases an array of wa_copy_argument_list().
void wa_free_argument_copies(char** copies);

/// Copies of the process arguments.
using OwnedArgumentCopies = std::unique_ptr<char*[], ReleaseWith<wa_free_argument_copies>>;

/// New string with the redirect in a URL query: what follows the first "redirect=", up to the
/// first "&autostarttoken=" behind it, URL-decoded. Null when there is none.
OwnedText wa_redirect_of_query(const char* query);
