// PageActions.h: what a page asks of the shell by navigating to a URL of the scheme "tvk".
//
// The policy handler refuses the navigation. One wa_web_action() parses the URL, the other one
// calls the wa_web_action_ function of that name, all before the handler returns.
#pragma once

#include "util/Owned.h"

#include <webkit2/webkit2.h>

/// Handler of "decide-policy". Lets navigations proceed, except to URIs that begin with "tvk://":
/// those are refused and, while the run of the window lasts, carried out as actions. TRUE for a
/// navigation, and for a new window and a response, which it leaves undecided; FALSE leaves any
/// other type to WebKit.
gboolean wa_web_decide_policy_cb(WebKitWebView* view, WebKitPolicyDecision* decision,
    WebKitPolicyDecisionType type, void* data = nullptr) noexcept;

/// Parses an action URL, decodes its query items "status" and "response", and carries the action
/// out. A URL without an action name does nothing.
void wa_web_action(const char* uri);

/// Carries out one action: "exit", "resize", "reload", "restart", "install" or "uninstall"; any
/// other name is only traced. Status and response may be null.
void wa_web_action(const char* action, const char* status, const char* response);

/// Keeps copies of status and response for the result file and ends the main loop.
void wa_web_action_Exit(const char* status, const char* response);

/// Resizes the window, to at least 64 and at most the work area in each dimension, and moves it
/// back inside the work area. See wa_resized() for `value` and `percent`; the reference is g_Size.
void wa_web_action_Resize(unsigned int value, unsigned int percent);

/// Loads the start page again when the process arguments have no URL query. A query with a redirect
/// opens that in the desktop browser, if it holds "://", and ends the main loop; a query without
/// one does nothing.
void wa_web_action_Reload();

/// Starts the program again with the process arguments and ends this process at once: without
/// result file and without release of the plug-in. Returns only when no process can be made.
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

/// New string with the redirect of a URL query: the URL-decoded text after the first "redirect=",
/// up to the next "&autostarttoken=". Null without a redirect.
OwnedText wa_redirect_of_query(const char* query);
