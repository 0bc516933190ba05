# Made by scripts/generate-contract from packaging/contract.
from __future__ import annotations

from typing import Any, Awaitable, Callable, List, Literal, Optional, Sequence, Union

from . import contract

# pytest shows a failure where the test calls this module, not in it.
__tracebackhide__ = True


class Commands:
    """Every command as a function, which gives the reply or raises."""

    #: Runs a command with its arguments by name.
    run: Callable[..., Any]

    def capture(self, app: str, path: str, **options: Any) -> Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture]:
        """Writes a picture of the application's windows. Writes a PNG file of the application's
        windows within the scope as the user would see them, on the display that shows its main
        window.
        """
        reply: Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture] = self.run("capture", {"app": app, "path": path}, **options)
        return reply

    def bg_click(self, app: str, x: float, y: float, *, button: Literal['left', 'right'] = 'left', count: int = 1, **options: Any) -> contract.BgClickSuccess:
        """Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the
        point, without moving the user's pointer or raising the window.
        """
        reply: contract.BgClickSuccess = self.run("bg-click", {"app": app, "x": x, "y": y, "button": button, "count": count}, **options)
        return reply

    def bg_scroll(self, app: str, x: float, y: float, dx: float, dy: float, **options: Any) -> contract.BgScrollSuccess:
        """Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point."""
        reply: contract.BgScrollSuccess = self.run("bg-scroll", {"app": app, "x": x, "y": y, "dx": dx, "dy": dy}, **options)
        return reply

    def bg_move(self, app: str, x: float, y: float, **options: Any) -> contract.BgMoveSuccess:
        """Lets a window see the pointer at a point. The application believes that the pointer is
        there; the user's own does not move.
        """
        reply: contract.BgMoveSuccess = self.run("bg-move", {"app": app, "x": x, "y": y}, **options)
        return reply

    def capture_probe(self, **options: Any) -> contract.CaptureProbeSuccess:
        """Says whether screens can be captured. Takes a tiny picture of the first display and
        throws it away. The argument is not used.
        """
        reply: contract.CaptureProbeSuccess = self.run("capture-probe", {}, **options)
        return reply

    def focus_release(self, pid: int, window: int, **options: Any) -> contract.FocusReleaseSuccess:
        """Takes back focus that another process gave. For use after a capture service that held
        focus was killed: process id and window are focusPid and focusWindow of the reply to bg-
        focus-hold.
        """
        reply: contract.FocusReleaseSuccess = self.run("focus-release", {"pid": pid, "window": window}, **options)
        return reply

    def bg_key(self, app: str, combo: str, **options: Any) -> contract.BgKeySuccess:
        """Presses a key combination. A combination is written as cmd+shift+s. A combination with
        cmd that is the shortcut of an enabled menu item presses that item.
        """
        reply: contract.BgKeySuccess = self.run("bg-key", {"app": app, "combo": combo}, **options)
        return reply

    def bg_type(self, app: str, text: str, **options: Any) -> contract.BgTypeSuccess:
        """Types a text. A line break is typed as shift and return."""
        reply: contract.BgTypeSuccess = self.run("bg-type", {"app": app, "text": text}, **options)
        return reply

    def bg_paste_files(self, app: str, paths: Sequence[str], **options: Any) -> contract.BgPasteFilesSuccess:
        """Pastes files, and puts the user's clipboard back. Works as if the files had been copied
        in the file manager. Relative paths start at the current directory. A copy that somebody
        else makes in the meantime is left alone. Any reply may also say "copyLost": true (a
        copy that somebody made in the very instant of clearing the clipboard is lost) and
        "clipboardRestored": false (the system did not take the old contents of the clipboard
        back, and it is empty).
        """
        reply: contract.BgPasteFilesSuccess = self.run("bg-paste-files", {"app": app, "paths": paths}, **options)
        return reply

    def permissions(self, **options: Any) -> contract.PermissionsSuccess:
        """Says which permissions are granted; never prompts."""
        reply: contract.PermissionsSuccess = self.run("permissions", {}, **options)
        return reply

    def scene(self, **options: Any) -> contract.SceneSuccess:
        """Shows the application in front and the place of the pointer. Without an application in
        front pid is 0 and bundleId empty.
        """
        reply: contract.SceneSuccess = self.run("scene", {}, **options)
        return reply

    def lock_now(self, **options: Any) -> contract.LockNowSuccess:
        """Locks the screen."""
        reply: contract.LockNowSuccess = self.run("lock-now", {}, **options)
        return reply

    def session(self, **options: Any) -> contract.SessionSuccess:
        """Says whether the screen is locked, or another user in front."""
        reply: contract.SessionSuccess = self.run("session", {}, **options)
        return reply

    def windows(self, app: str, **options: Any) -> Union[contract.WindowsNotRunning, contract.WindowsRunning]:
        """Lists an application's windows on screen, front to back. It leaves out windows smaller
        than 40 by 40 points.
        """
        reply: Union[contract.WindowsNotRunning, contract.WindowsRunning] = self.run("windows", {"app": app}, **options)
        return reply

    def ax_find_text(self, app: str, texts: Sequence[str], **options: Any) -> contract.AxFindTextSuccess:
        """Counts the elements that show texts."""
        reply: contract.AxFindTextSuccess = self.run("ax-find-text", {"app": app, "texts": texts}, **options)
        return reply

    def ax_texts_at(self, app: str, x: float, y: float, **options: Any) -> contract.AxTextsAtSuccess:
        """Shows the texts at a point."""
        reply: contract.AxTextsAtSuccess = self.run("ax-texts-at", {"app": app, "x": x, "y": y}, **options)
        return reply

    def ax_press_child(self, app: str, row: str, child: str, *, role: Optional[str] = None, **options: Any) -> contract.AxPressChildSuccess:
        """Hovers a row and presses a control in it."""
        reply: contract.AxPressChildSuccess = self.run("ax-press-child", {"app": app, "row": row, "child": child, "role": role}, **options)
        return reply

    def ax_at(self, app: str, x: float, y: float, **options: Any) -> contract.AxAtSuccess:
        """Shows the element at a point."""
        reply: contract.AxAtSuccess = self.run("ax-at", {"app": app, "x": x, "y": y}, **options)
        return reply

    def ax_press(self, app: str, x: float, y: float, **options: Any) -> contract.AxPressSuccess:
        """Presses the control at a point."""
        reply: contract.AxPressSuccess = self.run("ax-press", {"app": app, "x": x, "y": y}, **options)
        return reply

    def ax_press_in_document(self, app: str, document: str, button: str, **options: Any) -> contract.AxPressInDocumentSuccess:
        """Presses the one button of a label in the one document open."""
        reply: contract.AxPressInDocumentSuccess = self.run("ax-press-in-document", {"app": app, "document": document, "button": button}, **options)
        return reply

    def ax_press_exact(self, app: str, label: str, *, which: Literal['only', 'last'] = 'only', container: Optional[str] = None, **options: Any) -> contract.AxPressExactSuccess:
        """Presses the control of exactly a label. It must be the only one; with last it is the
        lowest one. With a container's label it is looked for only within that group.
        """
        reply: contract.AxPressExactSuccess = self.run("ax-press-exact", {"app": app, "label": label, "which": which, "container": container}, **options)
        return reply

    def ax_match(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxMatchSuccess:
        """Shows the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        reply: contract.AxMatchSuccess = self.run("ax-match", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)
        return reply

    def ax_press_match(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxPressMatchSuccess:
        """Presses the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        reply: contract.AxPressMatchSuccess = self.run("ax-press-match", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)
        return reply

    def ax_popup_items(self, app: str, **options: Any) -> contract.AxPopupItemsSuccess:
        """Lists the items of open pop-up menus."""
        reply: contract.AxPopupItemsSuccess = self.run("ax-popup-items", {"app": app}, **options)
        return reply

    def ax_slider(self, app: str, label: str, *, value: Optional[Union[float, Literal['increment', 'decrement']]] = None, **options: Any) -> Union[contract.AxSliderTold, contract.AxSliderStepped]:
        """Reads a slider, or moves it."""
        reply: Union[contract.AxSliderTold, contract.AxSliderStepped] = self.run("ax-slider", {"app": app, "label": label, "value": value}, **options)
        return reply

    def ax_insert(self, app: str, label: str, mode: Literal['replace', 'message', 'end', 'new_line', 'caret'], text: str, *, near_x: float = -1, near_y: float = -1, owned_texts: Sequence[str] = (), **options: Any) -> contract.AxInsertSuccess:
        """Writes into a field and reads it back. replace makes the text the whole content, but
        refuses to destroy text that is not among the texts of the last argument, a JSON list of
        the texts that the agent itself wrote. Fields of a single line in sheets, pop-overs and
        dialogs are exempt. message does the same without that guard. end puts the text behind
        the contents of the field, new_line on a new line there, caret in place of the
        selection. Any other word, a misspelt one too, works as end. A value that equals the
        field's label or placeholder counts as empty.
        """
        reply: contract.AxInsertSuccess = self.run("ax-insert", {"app": app, "label": label, "mode": mode, "text": text, "nearX": near_x, "nearY": near_y, "ownedTexts": owned_texts}, **options)
        return reply

    def ax_focus(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxFocusSuccess:
        """Gives a field the keyboard focus of its application."""
        reply: contract.AxFocusSuccess = self.run("ax-focus", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)
        return reply

    def reveal(self, app: str, **options: Any) -> contract.RevealSuccess:
        """Shows a hidden application, or one with all windows minimised."""
        reply: contract.RevealSuccess = self.run("reveal", {"app": app}, **options)
        return reply

    def ax_menu(self, app: str, titles: Sequence[str], **options: Any) -> contract.AxMenuSuccess:
        """Presses a menu item by its path."""
        reply: contract.AxMenuSuccess = self.run("ax-menu", {"app": app, "titles": titles}, **options)
        return reply

    def ax_menubar(self, app: str, **options: Any) -> contract.AxMenubarSuccess:
        """Lists the titles of the menu bar."""
        reply: contract.AxMenubarSuccess = self.run("ax-menubar", {"app": app}, **options)
        return reply

    def ax_list(self, app: str, **options: Any) -> contract.AxListSuccess:
        """Lists up to 400 elements that can be acted on."""
        reply: contract.AxListSuccess = self.run("ax-list", {"app": app}, **options)
        return reply

    def ax_dump(self, app: str, **options: Any) -> contract.AxDumpSuccess:
        """Lists all elements, up to 4,000."""
        reply: contract.AxDumpSuccess = self.run("ax-dump", {"app": app}, **options)
        return reply

    def ax_modal(self, app: str, **options: Any) -> contract.AxModalSuccess:
        """Lists sheets and dialogs with their texts and buttons."""
        reply: contract.AxModalSuccess = self.run("ax-modal", {"app": app}, **options)
        return reply

    def ax_modal_press(self, app: str, text: str, button: str, **options: Any) -> contract.AxModalPressSuccess:
        """Presses a button of the one dialog that reads exactly so."""
        reply: contract.AxModalPressSuccess = self.run("ax-modal-press", {"app": app, "text": text, "button": button}, **options)
        return reply

    def ax_focused(self, app: str, **options: Any) -> contract.AxFocusedSuccess:
        """Shows the element that has the keyboard focus of its application."""
        reply: contract.AxFocusedSuccess = self.run("ax-focused", {"app": app}, **options)
        return reply

    def ax_set_value(self, app: str, x: float, y: float, text: str, **options: Any) -> contract.AxSetValueSuccess:
        """Writes the value of the element at a point, without a guard."""
        reply: contract.AxSetValueSuccess = self.run("ax-set-value", {"app": app, "x": x, "y": y, "text": text}, **options)
        return reply


class App:
    """The commands on one application."""

    def __init__(self, commands: Commands, name: str) -> None:
        self.commands = commands
        self.name = name

    def capture(self, path: str, **options: Any) -> Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture]:
        """Writes a picture of the application's windows. Writes a PNG file of the application's
        windows within the scope as the user would see them, on the display that shows its main
        window.
        """
        reply: Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture] = self.commands.capture(self.name, path, **options)
        return reply

    def click(self, x: float, y: float, *, button: Literal['left', 'right'] = 'left', count: int = 1, **options: Any) -> contract.BgClickSuccess:
        """Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the
        point, without moving the user's pointer or raising the window.
        """
        reply: contract.BgClickSuccess = self.commands.bg_click(self.name, x, y, button=button, count=count, **options)
        return reply

    def scroll(self, x: float, y: float, dx: float, dy: float, **options: Any) -> contract.BgScrollSuccess:
        """Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point."""
        reply: contract.BgScrollSuccess = self.commands.bg_scroll(self.name, x, y, dx, dy, **options)
        return reply

    def move(self, x: float, y: float, **options: Any) -> contract.BgMoveSuccess:
        """Lets a window see the pointer at a point. The application believes that the pointer is
        there; the user's own does not move.
        """
        reply: contract.BgMoveSuccess = self.commands.bg_move(self.name, x, y, **options)
        return reply

    def key(self, combo: str, **options: Any) -> contract.BgKeySuccess:
        """Presses a key combination. A combination is written as cmd+shift+s. A combination with
        cmd that is the shortcut of an enabled menu item presses that item.
        """
        reply: contract.BgKeySuccess = self.commands.bg_key(self.name, combo, **options)
        return reply

    def type(self, text: str, **options: Any) -> contract.BgTypeSuccess:
        """Types a text. A line break is typed as shift and return."""
        reply: contract.BgTypeSuccess = self.commands.bg_type(self.name, text, **options)
        return reply

    def paste_files(self, paths: Sequence[str], **options: Any) -> contract.BgPasteFilesSuccess:
        """Pastes files, and puts the user's clipboard back. Works as if the files had been copied
        in the file manager. Relative paths start at the current directory. A copy that somebody
        else makes in the meantime is left alone. Any reply may also say "copyLost": true (a
        copy that somebody made in the very instant of clearing the clipboard is lost) and
        "clipboardRestored": false (the system did not take the old contents of the clipboard
        back, and it is empty).
        """
        reply: contract.BgPasteFilesSuccess = self.commands.bg_paste_files(self.name, paths, **options)
        return reply

    def windows(self, **options: Any) -> Union[contract.WindowsNotRunning, contract.WindowsRunning]:
        """Lists an application's windows on screen, front to back. It leaves out windows smaller
        than 40 by 40 points.
        """
        reply: Union[contract.WindowsNotRunning, contract.WindowsRunning] = self.commands.windows(self.name, **options)
        return reply

    def find_text(self, texts: Sequence[str], **options: Any) -> contract.AxFindTextSuccess:
        """Counts the elements that show texts."""
        reply: contract.AxFindTextSuccess = self.commands.ax_find_text(self.name, texts, **options)
        return reply

    def texts_at(self, x: float, y: float, **options: Any) -> contract.AxTextsAtSuccess:
        """Shows the texts at a point."""
        reply: contract.AxTextsAtSuccess = self.commands.ax_texts_at(self.name, x, y, **options)
        return reply

    def press_child(self, row: str, child: str, *, role: Optional[str] = None, **options: Any) -> contract.AxPressChildSuccess:
        """Hovers a row and presses a control in it."""
        reply: contract.AxPressChildSuccess = self.commands.ax_press_child(self.name, row, child, role=role, **options)
        return reply

    def at(self, x: float, y: float, **options: Any) -> contract.AxAtSuccess:
        """Shows the element at a point."""
        reply: contract.AxAtSuccess = self.commands.ax_at(self.name, x, y, **options)
        return reply

    def press_at(self, x: float, y: float, **options: Any) -> contract.AxPressSuccess:
        """Presses the control at a point."""
        reply: contract.AxPressSuccess = self.commands.ax_press(self.name, x, y, **options)
        return reply

    def press_in_document(self, document: str, button: str, **options: Any) -> contract.AxPressInDocumentSuccess:
        """Presses the one button of a label in the one document open."""
        reply: contract.AxPressInDocumentSuccess = self.commands.ax_press_in_document(self.name, document, button, **options)
        return reply

    def press(self, label: str, *, which: Literal['only', 'last'] = 'only', container: Optional[str] = None, **options: Any) -> contract.AxPressExactSuccess:
        """Presses the control of exactly a label. It must be the only one; with last it is the
        lowest one. With a container's label it is looked for only within that group.
        """
        reply: contract.AxPressExactSuccess = self.commands.ax_press_exact(self.name, label, which=which, container=container, **options)
        return reply

    def match(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxMatchSuccess:
        """Shows the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        reply: contract.AxMatchSuccess = self.commands.ax_match(self.name, label, near_x=near_x, near_y=near_y, **options)
        return reply

    def press_match(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxPressMatchSuccess:
        """Presses the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        reply: contract.AxPressMatchSuccess = self.commands.ax_press_match(self.name, label, near_x=near_x, near_y=near_y, **options)
        return reply

    def popup_items(self, **options: Any) -> contract.AxPopupItemsSuccess:
        """Lists the items of open pop-up menus."""
        reply: contract.AxPopupItemsSuccess = self.commands.ax_popup_items(self.name, **options)
        return reply

    def slider(self, label: str, *, value: Optional[Union[float, Literal['increment', 'decrement']]] = None, **options: Any) -> Union[contract.AxSliderTold, contract.AxSliderStepped]:
        """Reads a slider, or moves it."""
        reply: Union[contract.AxSliderTold, contract.AxSliderStepped] = self.commands.ax_slider(self.name, label, value=value, **options)
        return reply

    def insert(self, label: str, mode: Literal['replace', 'message', 'end', 'new_line', 'caret'], text: str, *, near_x: float = -1, near_y: float = -1, owned_texts: Sequence[str] = (), **options: Any) -> contract.AxInsertSuccess:
        """Writes into a field and reads it back. replace makes the text the whole content, but
        refuses to destroy text that is not among the texts of the last argument, a JSON list of
        the texts that the agent itself wrote. Fields of a single line in sheets, pop-overs and
        dialogs are exempt. message does the same without that guard. end puts the text behind
        the contents of the field, new_line on a new line there, caret in place of the
        selection. Any other word, a misspelt one too, works as end. A value that equals the
        field's label or placeholder counts as empty.
        """
        reply: contract.AxInsertSuccess = self.commands.ax_insert(self.name, label, mode, text, near_x=near_x, near_y=near_y, owned_texts=owned_texts, **options)
        return reply

    def focus(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxFocusSuccess:
        """Gives a field the keyboard focus of its application."""
        reply: contract.AxFocusSuccess = self.commands.ax_focus(self.name, label, near_x=near_x, near_y=near_y, **options)
        return reply

    def reveal(self, **options: Any) -> contract.RevealSuccess:
        """Shows a hidden application, or one with all windows minimised."""
        reply: contract.RevealSuccess = self.commands.reveal(self.name, **options)
        return reply

    def menu(self, titles: Sequence[str], **options: Any) -> contract.AxMenuSuccess:
        """Presses a menu item by its path."""
        reply: contract.AxMenuSuccess = self.commands.ax_menu(self.name, titles, **options)
        return reply

    def menubar(self, **options: Any) -> contract.AxMenubarSuccess:
        """Lists the titles of the menu bar."""
        reply: contract.AxMenubarSuccess = self.commands.ax_menubar(self.name, **options)
        return reply

    def list(self, **options: Any) -> contract.AxListSuccess:
        """Lists up to 400 elements that can be acted on."""
        reply: contract.AxListSuccess = self.commands.ax_list(self.name, **options)
        return reply

    def dump(self, **options: Any) -> contract.AxDumpSuccess:
        """Lists all elements, up to 4,000."""
        reply: contract.AxDumpSuccess = self.commands.ax_dump(self.name, **options)
        return reply

    def modals(self, **options: Any) -> contract.AxModalSuccess:
        """Lists sheets and dialogs with their texts and buttons."""
        reply: contract.AxModalSuccess = self.commands.ax_modal(self.name, **options)
        return reply

    def press_in_modal(self, text: str, button: str, **options: Any) -> contract.AxModalPressSuccess:
        """Presses a button of the one dialog that reads exactly so."""
        reply: contract.AxModalPressSuccess = self.commands.ax_modal_press(self.name, text, button, **options)
        return reply

    def focused(self, **options: Any) -> contract.AxFocusedSuccess:
        """Shows the element that has the keyboard focus of its application."""
        reply: contract.AxFocusedSuccess = self.commands.ax_focused(self.name, **options)
        return reply

    def set_value(self, x: float, y: float, text: str, **options: Any) -> contract.AxSetValueSuccess:
        """Writes the value of the element at a point, without a guard."""
        reply: contract.AxSetValueSuccess = self.commands.ax_set_value(self.name, x, y, text, **options)
        return reply


class AsyncCommands:
    """Every command as a function, which gives the reply or raises."""

    #: Runs a command with its arguments by name.
    run: Callable[..., Awaitable[Any]]

    async def capture(self, app: str, path: str, **options: Any) -> Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture]:
        """Writes a picture of the application's windows. Writes a PNG file of the application's
        windows within the scope as the user would see them, on the display that shows its main
        window.
        """
        reply: Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture] = await self.run("capture", {"app": app, "path": path}, **options)
        return reply

    async def bg_click(self, app: str, x: float, y: float, *, button: Literal['left', 'right'] = 'left', count: int = 1, **options: Any) -> contract.BgClickSuccess:
        """Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the
        point, without moving the user's pointer or raising the window.
        """
        reply: contract.BgClickSuccess = await self.run("bg-click", {"app": app, "x": x, "y": y, "button": button, "count": count}, **options)
        return reply

    async def bg_scroll(self, app: str, x: float, y: float, dx: float, dy: float, **options: Any) -> contract.BgScrollSuccess:
        """Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point."""
        reply: contract.BgScrollSuccess = await self.run("bg-scroll", {"app": app, "x": x, "y": y, "dx": dx, "dy": dy}, **options)
        return reply

    async def bg_move(self, app: str, x: float, y: float, **options: Any) -> contract.BgMoveSuccess:
        """Lets a window see the pointer at a point. The application believes that the pointer is
        there; the user's own does not move.
        """
        reply: contract.BgMoveSuccess = await self.run("bg-move", {"app": app, "x": x, "y": y}, **options)
        return reply

    async def capture_probe(self, **options: Any) -> contract.CaptureProbeSuccess:
        """Says whether screens can be captured. Takes a tiny picture of the first display and
        throws it away. The argument is not used.
        """
        reply: contract.CaptureProbeSuccess = await self.run("capture-probe", {}, **options)
        return reply

    async def focus_release(self, pid: int, window: int, **options: Any) -> contract.FocusReleaseSuccess:
        """Takes back focus that another process gave. For use after a capture service that held
        focus was killed: process id and window are focusPid and focusWindow of the reply to bg-
        focus-hold.
        """
        reply: contract.FocusReleaseSuccess = await self.run("focus-release", {"pid": pid, "window": window}, **options)
        return reply

    async def bg_key(self, app: str, combo: str, **options: Any) -> contract.BgKeySuccess:
        """Presses a key combination. A combination is written as cmd+shift+s. A combination with
        cmd that is the shortcut of an enabled menu item presses that item.
        """
        reply: contract.BgKeySuccess = await self.run("bg-key", {"app": app, "combo": combo}, **options)
        return reply

    async def bg_type(self, app: str, text: str, **options: Any) -> contract.BgTypeSuccess:
        """Types a text. A line break is typed as shift and return."""
        reply: contract.BgTypeSuccess = await self.run("bg-type", {"app": app, "text": text}, **options)
        return reply

    async def bg_paste_files(self, app: str, paths: Sequence[str], **options: Any) -> contract.BgPasteFilesSuccess:
        """Pastes files, and puts the user's clipboard back. Works as if the files had been copied
        in the file manager. Relative paths start at the current directory. A copy that somebody
        else makes in the meantime is left alone. Any reply may also say "copyLost": true (a
        copy that somebody made in the very instant of clearing the clipboard is lost) and
        "clipboardRestored": false (the system did not take the old contents of the clipboard
        back, and it is empty).
        """
        reply: contract.BgPasteFilesSuccess = await self.run("bg-paste-files", {"app": app, "paths": paths}, **options)
        return reply

    async def permissions(self, **options: Any) -> contract.PermissionsSuccess:
        """Says which permissions are granted; never prompts."""
        reply: contract.PermissionsSuccess = await self.run("permissions", {}, **options)
        return reply

    async def scene(self, **options: Any) -> contract.SceneSuccess:
        """Shows the application in front and the place of the pointer. Without an application in
        front pid is 0 and bundleId empty.
        """
        reply: contract.SceneSuccess = await self.run("scene", {}, **options)
        return reply

    async def lock_now(self, **options: Any) -> contract.LockNowSuccess:
        """Locks the screen."""
        reply: contract.LockNowSuccess = await self.run("lock-now", {}, **options)
        return reply

    async def session(self, **options: Any) -> contract.SessionSuccess:
        """Says whether the screen is locked, or another user in front."""
        reply: contract.SessionSuccess = await self.run("session", {}, **options)
        return reply

    async def windows(self, app: str, **options: Any) -> Union[contract.WindowsNotRunning, contract.WindowsRunning]:
        """Lists an application's windows on screen, front to back. It leaves out windows smaller
        than 40 by 40 points.
        """
        reply: Union[contract.WindowsNotRunning, contract.WindowsRunning] = await self.run("windows", {"app": app}, **options)
        return reply

    async def ax_find_text(self, app: str, texts: Sequence[str], **options: Any) -> contract.AxFindTextSuccess:
        """Counts the elements that show texts."""
        reply: contract.AxFindTextSuccess = await self.run("ax-find-text", {"app": app, "texts": texts}, **options)
        return reply

    async def ax_texts_at(self, app: str, x: float, y: float, **options: Any) -> contract.AxTextsAtSuccess:
        """Shows the texts at a point."""
        reply: contract.AxTextsAtSuccess = await self.run("ax-texts-at", {"app": app, "x": x, "y": y}, **options)
        return reply

    async def ax_press_child(self, app: str, row: str, child: str, *, role: Optional[str] = None, **options: Any) -> contract.AxPressChildSuccess:
        """Hovers a row and presses a control in it."""
        reply: contract.AxPressChildSuccess = await self.run("ax-press-child", {"app": app, "row": row, "child": child, "role": role}, **options)
        return reply

    async def ax_at(self, app: str, x: float, y: float, **options: Any) -> contract.AxAtSuccess:
        """Shows the element at a point."""
        reply: contract.AxAtSuccess = await self.run("ax-at", {"app": app, "x": x, "y": y}, **options)
        return reply

    async def ax_press(self, app: str, x: float, y: float, **options: Any) -> contract.AxPressSuccess:
        """Presses the control at a point."""
        reply: contract.AxPressSuccess = await self.run("ax-press", {"app": app, "x": x, "y": y}, **options)
        return reply

    async def ax_press_in_document(self, app: str, document: str, button: str, **options: Any) -> contract.AxPressInDocumentSuccess:
        """Presses the one button of a label in the one document open."""
        reply: contract.AxPressInDocumentSuccess = await self.run("ax-press-in-document", {"app": app, "document": document, "button": button}, **options)
        return reply

    async def ax_press_exact(self, app: str, label: str, *, which: Literal['only', 'last'] = 'only', container: Optional[str] = None, **options: Any) -> contract.AxPressExactSuccess:
        """Presses the control of exactly a label. It must be the only one; with last it is the
        lowest one. With a container's label it is looked for only within that group.
        """
        reply: contract.AxPressExactSuccess = await self.run("ax-press-exact", {"app": app, "label": label, "which": which, "container": container}, **options)
        return reply

    async def ax_match(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxMatchSuccess:
        """Shows the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        reply: contract.AxMatchSuccess = await self.run("ax-match", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)
        return reply

    async def ax_press_match(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxPressMatchSuccess:
        """Presses the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        reply: contract.AxPressMatchSuccess = await self.run("ax-press-match", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)
        return reply

    async def ax_popup_items(self, app: str, **options: Any) -> contract.AxPopupItemsSuccess:
        """Lists the items of open pop-up menus."""
        reply: contract.AxPopupItemsSuccess = await self.run("ax-popup-items", {"app": app}, **options)
        return reply

    async def ax_slider(self, app: str, label: str, *, value: Optional[Union[float, Literal['increment', 'decrement']]] = None, **options: Any) -> Union[contract.AxSliderTold, contract.AxSliderStepped]:
        """Reads a slider, or moves it."""
        reply: Union[contract.AxSliderTold, contract.AxSliderStepped] = await self.run("ax-slider", {"app": app, "label": label, "value": value}, **options)
        return reply

    async def ax_insert(self, app: str, label: str, mode: Literal['replace', 'message', 'end', 'new_line', 'caret'], text: str, *, near_x: float = -1, near_y: float = -1, owned_texts: Sequence[str] = (), **options: Any) -> contract.AxInsertSuccess:
        """Writes into a field and reads it back. replace makes the text the whole content, but
        refuses to destroy text that is not among the texts of the last argument, a JSON list of
        the texts that the agent itself wrote. Fields of a single line in sheets, pop-overs and
        dialogs are exempt. message does the same without that guard. end puts the text behind
        the contents of the field, new_line on a new line there, caret in place of the
        selection. Any other word, a misspelt one too, works as end. A value that equals the
        field's label or placeholder counts as empty.
        """
        reply: contract.AxInsertSuccess = await self.run("ax-insert", {"app": app, "label": label, "mode": mode, "text": text, "nearX": near_x, "nearY": near_y, "ownedTexts": owned_texts}, **options)
        return reply

    async def ax_focus(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxFocusSuccess:
        """Gives a field the keyboard focus of its application."""
        reply: contract.AxFocusSuccess = await self.run("ax-focus", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)
        return reply

    async def reveal(self, app: str, **options: Any) -> contract.RevealSuccess:
        """Shows a hidden application, or one with all windows minimised."""
        reply: contract.RevealSuccess = await self.run("reveal", {"app": app}, **options)
        return reply

    async def ax_menu(self, app: str, titles: Sequence[str], **options: Any) -> contract.AxMenuSuccess:
        """Presses a menu item by its path."""
        reply: contract.AxMenuSuccess = await self.run("ax-menu", {"app": app, "titles": titles}, **options)
        return reply

    async def ax_menubar(self, app: str, **options: Any) -> contract.AxMenubarSuccess:
        """Lists the titles of the menu bar."""
        reply: contract.AxMenubarSuccess = await self.run("ax-menubar", {"app": app}, **options)
        return reply

    async def ax_list(self, app: str, **options: Any) -> contract.AxListSuccess:
        """Lists up to 400 elements that can be acted on."""
        reply: contract.AxListSuccess = await self.run("ax-list", {"app": app}, **options)
        return reply

    async def ax_dump(self, app: str, **options: Any) -> contract.AxDumpSuccess:
        """Lists all elements, up to 4,000."""
        reply: contract.AxDumpSuccess = await self.run("ax-dump", {"app": app}, **options)
        return reply

    async def ax_modal(self, app: str, **options: Any) -> contract.AxModalSuccess:
        """Lists sheets and dialogs with their texts and buttons."""
        reply: contract.AxModalSuccess = await self.run("ax-modal", {"app": app}, **options)
        return reply

    async def ax_modal_press(self, app: str, text: str, button: str, **options: Any) -> contract.AxModalPressSuccess:
        """Presses a button of the one dialog that reads exactly so."""
        reply: contract.AxModalPressSuccess = await self.run("ax-modal-press", {"app": app, "text": text, "button": button}, **options)
        return reply

    async def ax_focused(self, app: str, **options: Any) -> contract.AxFocusedSuccess:
        """Shows the element that has the keyboard focus of its application."""
        reply: contract.AxFocusedSuccess = await self.run("ax-focused", {"app": app}, **options)
        return reply

    async def ax_set_value(self, app: str, x: float, y: float, text: str, **options: Any) -> contract.AxSetValueSuccess:
        """Writes the value of the element at a point, without a guard."""
        reply: contract.AxSetValueSuccess = await self.run("ax-set-value", {"app": app, "x": x, "y": y, "text": text}, **options)
        return reply


class AsyncApp:
    """The commands on one application."""

    def __init__(self, commands: AsyncCommands, name: str) -> None:
        self.commands = commands
        self.name = name

    async def capture(self, path: str, **options: Any) -> Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture]:
        """Writes a picture of the application's windows. Writes a PNG file of the application's
        windows within the scope as the user would see them, on the display that shows its main
        window.
        """
        reply: Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture] = await self.commands.capture(self.name, path, **options)
        return reply

    async def click(self, x: float, y: float, *, button: Literal['left', 'right'] = 'left', count: int = 1, **options: Any) -> contract.BgClickSuccess:
        """Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the
        point, without moving the user's pointer or raising the window.
        """
        reply: contract.BgClickSuccess = await self.commands.bg_click(self.name, x, y, button=button, count=count, **options)
        return reply

    async def scroll(self, x: float, y: float, dx: float, dy: float, **options: Any) -> contract.BgScrollSuccess:
        """Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point."""
        reply: contract.BgScrollSuccess = await self.commands.bg_scroll(self.name, x, y, dx, dy, **options)
        return reply

    async def move(self, x: float, y: float, **options: Any) -> contract.BgMoveSuccess:
        """Lets a window see the pointer at a point. The application believes that the pointer is
        there; the user's own does not move.
        """
        reply: contract.BgMoveSuccess = await self.commands.bg_move(self.name, x, y, **options)
        return reply

    async def key(self, combo: str, **options: Any) -> contract.BgKeySuccess:
        """Presses a key combination. A combination is written as cmd+shift+s. A combination with
        cmd that is the shortcut of an enabled menu item presses that item.
        """
        reply: contract.BgKeySuccess = await self.commands.bg_key(self.name, combo, **options)
        return reply

    async def type(self, text: str, **options: Any) -> contract.BgTypeSuccess:
        """Types a text. A line break is typed as shift and return."""
        reply: contract.BgTypeSuccess = await self.commands.bg_type(self.name, text, **options)
        return reply

    async def paste_files(self, paths: Sequence[str], **options: Any) -> contract.BgPasteFilesSuccess:
        """Pastes files, and puts the user's clipboard back. Works as if the files had been copied
        in the file manager. Relative paths start at the current directory. A copy that somebody
        else makes in the meantime is left alone. Any reply may also say "copyLost": true (a
        copy that somebody made in the very instant of clearing the clipboard is lost) and
        "clipboardRestored": false (the system did not take the old contents of the clipboard
        back, and it is empty).
        """
        reply: contract.BgPasteFilesSuccess = await self.commands.bg_paste_files(self.name, paths, **options)
        return reply

    async def windows(self, **options: Any) -> Union[contract.WindowsNotRunning, contract.WindowsRunning]:
        """Lists an application's windows on screen, front to back. It leaves out windows smaller
        than 40 by 40 points.
        """
        reply: Union[contract.WindowsNotRunning, contract.WindowsRunning] = await self.commands.windows(self.name, **options)
        return reply

    async def find_text(self, texts: Sequence[str], **options: Any) -> contract.AxFindTextSuccess:
        """Counts the elements that show texts."""
        reply: contract.AxFindTextSuccess = await self.commands.ax_find_text(self.name, texts, **options)
        return reply

    async def texts_at(self, x: float, y: float, **options: Any) -> contract.AxTextsAtSuccess:
        """Shows the texts at a point."""
        reply: contract.AxTextsAtSuccess = await self.commands.ax_texts_at(self.name, x, y, **options)
        return reply

    async def press_child(self, row: str, child: str, *, role: Optional[str] = None, **options: Any) -> contract.AxPressChildSuccess:
        """Hovers a row and presses a control in it."""
        reply: contract.AxPressChildSuccess = await self.commands.ax_press_child(self.name, row, child, role=role, **options)
        return reply

    async def at(self, x: float, y: float, **options: Any) -> contract.AxAtSuccess:
        """Shows the element at a point."""
        reply: contract.AxAtSuccess = await self.commands.ax_at(self.name, x, y, **options)
        return reply

    async def press_at(self, x: float, y: float, **options: Any) -> contract.AxPressSuccess:
        """Presses the control at a point."""
        reply: contract.AxPressSuccess = await self.commands.ax_press(self.name, x, y, **options)
        return reply

    async def press_in_document(self, document: str, button: str, **options: Any) -> contract.AxPressInDocumentSuccess:
        """Presses the one button of a label in the one document open."""
        reply: contract.AxPressInDocumentSuccess = await self.commands.ax_press_in_document(self.name, document, button, **options)
        return reply

    async def press(self, label: str, *, which: Literal['only', 'last'] = 'only', container: Optional[str] = None, **options: Any) -> contract.AxPressExactSuccess:
        """Presses the control of exactly a label. It must be the only one; with last it is the
        lowest one. With a container's label it is looked for only within that group.
        """
        reply: contract.AxPressExactSuccess = await self.commands.ax_press_exact(self.name, label, which=which, container=container, **options)
        return reply

    async def match(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxMatchSuccess:
        """Shows the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        reply: contract.AxMatchSuccess = await self.commands.ax_match(self.name, label, near_x=near_x, near_y=near_y, **options)
        return reply

    async def press_match(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxPressMatchSuccess:
        """Presses the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        reply: contract.AxPressMatchSuccess = await self.commands.ax_press_match(self.name, label, near_x=near_x, near_y=near_y, **options)
        return reply

    async def popup_items(self, **options: Any) -> contract.AxPopupItemsSuccess:
        """Lists the items of open pop-up menus."""
        reply: contract.AxPopupItemsSuccess = await self.commands.ax_popup_items(self.name, **options)
        return reply

    async def slider(self, label: str, *, value: Optional[Union[float, Literal['increment', 'decrement']]] = None, **options: Any) -> Union[contract.AxSliderTold, contract.AxSliderStepped]:
        """Reads a slider, or moves it."""
        reply: Union[contract.AxSliderTold, contract.AxSliderStepped] = await self.commands.ax_slider(self.name, label, value=value, **options)
        return reply

    async def insert(self, label: str, mode: Literal['replace', 'message', 'end', 'new_line', 'caret'], text: str, *, near_x: float = -1, near_y: float = -1, owned_texts: Sequence[str] = (), **options: Any) -> contract.AxInsertSuccess:
        """Writes into a field and reads it back. replace makes the text the whole content, but
        refuses to destroy text that is not among the texts of the last argument, a JSON list of
        the texts that the agent itself wrote. Fields of a single line in sheets, pop-overs and
        dialogs are exempt. message does the same without that guard. end puts the text behind
        the contents of the field, new_line on a new line there, caret in place of the
        selection. Any other word, a misspelt one too, works as end. A value that equals the
        field's label or placeholder counts as empty.
        """
        reply: contract.AxInsertSuccess = await self.commands.ax_insert(self.name, label, mode, text, near_x=near_x, near_y=near_y, owned_texts=owned_texts, **options)
        return reply

    async def focus(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxFocusSuccess:
        """Gives a field the keyboard focus of its application."""
        reply: contract.AxFocusSuccess = await self.commands.ax_focus(self.name, label, near_x=near_x, near_y=near_y, **options)
        return reply

    async def reveal(self, **options: Any) -> contract.RevealSuccess:
        """Shows a hidden application, or one with all windows minimised."""
        reply: contract.RevealSuccess = await self.commands.reveal(self.name, **options)
        return reply

    async def menu(self, titles: Sequence[str], **options: Any) -> contract.AxMenuSuccess:
        """Presses a menu item by its path."""
        reply: contract.AxMenuSuccess = await self.commands.ax_menu(self.name, titles, **options)
        return reply

    async def menubar(self, **options: Any) -> contract.AxMenubarSuccess:
        """Lists the titles of the menu bar."""
        reply: contract.AxMenubarSuccess = await self.commands.ax_menubar(self.name, **options)
        return reply

    async def list(self, **options: Any) -> contract.AxListSuccess:
        """Lists up to 400 elements that can be acted on."""
        reply: contract.AxListSuccess = await self.commands.ax_list(self.name, **options)
        return reply

    async def dump(self, **options: Any) -> contract.AxDumpSuccess:
        """Lists all elements, up to 4,000."""
        reply: contract.AxDumpSuccess = await self.commands.ax_dump(self.name, **options)
        return reply

    async def modals(self, **options: Any) -> contract.AxModalSuccess:
        """Lists sheets and dialogs with their texts and buttons."""
        reply: contract.AxModalSuccess = await self.commands.ax_modal(self.name, **options)
        return reply

    async def press_in_modal(self, text: str, button: str, **options: Any) -> contract.AxModalPressSuccess:
        """Presses a button of the one dialog that reads exactly so."""
        reply: contract.AxModalPressSuccess = await self.commands.ax_modal_press(self.name, text, button, **options)
        return reply

    async def focused(self, **options: Any) -> contract.AxFocusedSuccess:
        """Shows the element that has the keyboard focus of its application."""
        reply: contract.AxFocusedSuccess = await self.commands.ax_focused(self.name, **options)
        return reply

    async def set_value(self, x: float, y: float, text: str, **options: Any) -> contract.AxSetValueSuccess:
        """Writes the value of the element at a point, without a guard."""
        reply: contract.AxSetValueSuccess = await self.commands.ax_set_value(self.name, x, y, text, **options)
        return reply
