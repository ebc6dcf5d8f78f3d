#pragma once

// The platform's numbered kinds of dialogs, beside the named ones of
// TarnRolesType and TarnRolesContainerType. Clients tell a dialog from a
// listing by the container type, and draw the special rows of a dialog by
// their row type.
namespace TarnDialogContainerType {
enum Enum : int {
    // An ordinary list, drawn as a listing is.
    List = 0,
    // A dialog: its rows are texts, fields and buttons, drawn together.
    Dialog = 100,
};
}

namespace TarnDialogRowType {
enum Enum : int {
    // One choice of a select field; its value is what the field takes.
    Option = 101,
    // A web page to open outside the device; its media data holds the URL
    // as the one resource.
    Link = 106,
    // A login on a service's own page; its value holds a TarnOAuth2Info.
    OAuth2Login = 109,
};
}
