# Made by scripts/generate-contract from packaging/contract.
from __future__ import annotations

from typing import Any, List, Literal, Optional, Sequence, Union

from . import contract


class Commands:
    """Every command as a function, which gives the reply or raises."""

    def run(self, command: str, given: dict, **options: Any) -> Any:
        """Runs a command with its arguments by name."""
        raise NotImplementedError

    def capture(self, app: str, path: str, **options: Any) -> Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture]:
        """Writes a picture of the application's windows. Writes a PNG file of what the user would
        see of the application's windows within the scope, on the display that shows its main
        window.
        """
        return self.run("capture", {"app": app, "path": path}, **options)

    def bg_click(self, app: str, x: float, y: float, *, button: Literal['left', 'right'] = 'left', count: int = 1, **options: Any) -> contract.BgClickSuccess:
        """Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the
        point, without moving the user's pointer or raising the window.
        """
        return self.run("bg-click", {"app": app, "x": x, "y": y, "button": button, "count": count}, **options)

    def bg_scroll(self, app: str, x: float, y: float, dx: float, dy: float, **options: Any) -> contract.BgScrollSuccess:
        """Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point."""
        return self.run("bg-scroll", {"app": app, "x": x, "y": y, "dx": dx, "dy": dy}, **options)

    def bg_move(self, app: str, x: float, y: float, **options: Any) -> contract.BgMoveSuccess:
        """Lets a window see the pointer at a point. The application believes that the pointer is
        there; the user's own does not move.
        """
        return self.run("bg-move", {"app": app, "x": x, "y": y}, **options)

    def capture_probe(self, **options: Any) -> contract.CaptureProbeSuccess:
        """Tells whether screens can be captured. Takes a tiny picture of the first display and
        throws it away. The argument is not used.
        """
        return self.run("capture-probe", {}, **options)

    def focus_release(self, pid: int, window: int, **options: Any) -> contract.FocusReleaseSuccess:
        """Takes back focus that another process gave. For use after a capture service that held
        focus was killed: process id and window are focusPid and focusWindow of the reply to bg-
        focus-hold.
        """
        return self.run("focus-release", {"pid": pid, "window": window}, **options)

    def bg_key(self, app: str, combo: str, **options: Any) -> contract.BgKeySuccess:
        """Presses a key combination. Such as cmd+shift+s. A combination with cmd that is the
        shortcut of an enabled menu item presses that item.
        """
        return self.run("bg-key", {"app": app, "combo": combo}, **options)

    def bg_type(self, app: str, text: str, **options: Any) -> contract.BgTypeSuccess:
        """Types a text. A line break is typed as shift and return."""
        return self.run("bg-type", {"app": app, "text": text}, **options)

    def bg_paste_files(self, app: str, paths: Sequence[str], **options: Any) -> contract.BgPasteFilesSuccess:
        """Pastes files, and puts the user's clipboard back. As if the files had been copied in the
        file manager. Relative paths start at the current directory. What somebody else copies
        meanwhile is left alone. Any reply may also say "copyLost": true (somebody copied
        something in the very instant at which the clipboard was cleared, and it is gone) and
        "clipboardRestored": false (the system did not take back what had been on the clipboard,
        which is empty).
        """
        return self.run("bg-paste-files", {"app": app, "paths": paths}, **options)

    def permissions(self, **options: Any) -> contract.PermissionsSuccess:
        """Tells which permissions are granted; never prompts."""
        return self.run("permissions", {}, **options)

    def scene(self, **options: Any) -> contract.SceneSuccess:
        """Tells the application in front and where the pointer is. Without an application in front
        pid is 0 and bundleId empty.
        """
        return self.run("scene", {}, **options)

    def lock_now(self, **options: Any) -> contract.LockNowSuccess:
        """Locks the screen."""
        return self.run("lock-now", {}, **options)

    def session(self, **options: Any) -> contract.SessionSuccess:
        """Tells whether the screen is locked, or another user in front."""
        return self.run("session", {}, **options)

    def windows(self, app: str, **options: Any) -> Union[contract.WindowsNotRunning, contract.WindowsRunning]:
        """Lists an application's windows on screen, front to back. None smaller than 40 by 40
        points.
        """
        return self.run("windows", {"app": app}, **options)

    def ax_find_text(self, app: str, texts: Sequence[str], **options: Any) -> contract.AxFindTextSuccess:
        """Counts where texts are shown."""
        return self.run("ax-find-text", {"app": app, "texts": texts}, **options)

    def ax_texts_at(self, app: str, x: float, y: float, **options: Any) -> contract.AxTextsAtSuccess:
        """Tells the texts at a point."""
        return self.run("ax-texts-at", {"app": app, "x": x, "y": y}, **options)

    def ax_press_child(self, app: str, row: str, child: str, *, role: Optional[str] = None, **options: Any) -> contract.AxPressChildSuccess:
        """Hovers a row and presses a control in it."""
        return self.run("ax-press-child", {"app": app, "row": row, "child": child, "role": role}, **options)

    def ax_at(self, app: str, x: float, y: float, **options: Any) -> contract.AxAtSuccess:
        """Tells the element at a point."""
        return self.run("ax-at", {"app": app, "x": x, "y": y}, **options)

    def ax_press(self, app: str, x: float, y: float, **options: Any) -> contract.AxPressSuccess:
        """Presses the control at a point."""
        return self.run("ax-press", {"app": app, "x": x, "y": y}, **options)

    def ax_press_in_document(self, app: str, document: str, button: str, **options: Any) -> contract.AxPressInDocumentSuccess:
        """Presses the one button of a label in the one document open."""
        return self.run("ax-press-in-document", {"app": app, "document": document, "button": button}, **options)

    def ax_press_exact(self, app: str, label: str, *, which: Literal['only', 'last'] = 'only', container: Optional[str] = None, **options: Any) -> contract.AxPressExactSuccess:
        """Presses the control of exactly a label. The only one, or with last the lowest one; with
        a container's label only within that group.
        """
        return self.run("ax-press-exact", {"app": app, "label": label, "which": which, "container": container}, **options)

    def ax_match(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxMatchSuccess:
        """Tells the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        return self.run("ax-match", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)

    def ax_press_match(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxPressMatchSuccess:
        """Presses the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        return self.run("ax-press-match", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)

    def ax_popup_items(self, app: str, **options: Any) -> contract.AxPopupItemsSuccess:
        """Lists the items of open pop-up menus."""
        return self.run("ax-popup-items", {"app": app}, **options)

    def ax_slider(self, app: str, label: str, *, value: Optional[Union[float, Literal['increment', 'decrement']]] = None, **options: Any) -> Union[contract.AxSliderTold, contract.AxSliderStepped]:
        """Reads a slider, or moves it."""
        return self.run("ax-slider", {"app": app, "label": label, "value": value}, **options)

    def ax_insert(self, app: str, label: str, mode: Literal['replace', 'message', 'end', 'new_line', 'caret'], text: str, *, near_x: float = -1, near_y: float = -1, owned_texts: Sequence[str] = (), **options: Any) -> contract.AxInsertSuccess:
        """Writes into a field and reads it back. replace makes the text the whole content, but
        refuses to destroy text that is not among the texts of the last argument, a JSON list of
        what the agent wrote itself; fields of a single line in sheets, pop-overs and dialogs
        are exempt. message does the same without that guard. end puts the text behind what the
        field holds, new_line on a new line there, caret in place of the selection. Any other
        word, a misspelt one too, is as end. A value that equals the field's label or
        placeholder counts as nothing.
        """
        return self.run("ax-insert", {"app": app, "label": label, "mode": mode, "text": text, "nearX": near_x, "nearY": near_y, "ownedTexts": owned_texts}, **options)

    def ax_focus(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxFocusSuccess:
        """Gives a field the keyboard focus of its application."""
        return self.run("ax-focus", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)

    def reveal(self, app: str, **options: Any) -> contract.RevealSuccess:
        """Shows a hidden application, or one with all windows minimised."""
        return self.run("reveal", {"app": app}, **options)

    def ax_menu(self, app: str, titles: Sequence[str], **options: Any) -> contract.AxMenuSuccess:
        """Presses a menu item by its path."""
        return self.run("ax-menu", {"app": app, "titles": titles}, **options)

    def ax_menubar(self, app: str, **options: Any) -> contract.AxMenubarSuccess:
        """Lists the titles of the menu bar."""
        return self.run("ax-menubar", {"app": app}, **options)

    def ax_list(self, app: str, **options: Any) -> contract.AxListSuccess:
        """Lists up to 400 elements that can be acted on."""
        return self.run("ax-list", {"app": app}, **options)

    def ax_dump(self, app: str, **options: Any) -> contract.AxDumpSuccess:
        """Lists all elements, up to 4,000."""
        return self.run("ax-dump", {"app": app}, **options)

    def ax_modal(self, app: str, **options: Any) -> contract.AxModalSuccess:
        """Lists sheets and dialogs with their texts and buttons."""
        return self.run("ax-modal", {"app": app}, **options)

    def ax_modal_press(self, app: str, text: str, button: str, **options: Any) -> contract.AxModalPressSuccess:
        """Presses a button of the one dialog that reads exactly so."""
        return self.run("ax-modal-press", {"app": app, "text": text, "button": button}, **options)

    def ax_focused(self, app: str, **options: Any) -> contract.AxFocusedSuccess:
        """Tells the element that has the keyboard focus of its application."""
        return self.run("ax-focused", {"app": app}, **options)

    def ax_set_value(self, app: str, x: float, y: float, text: str, **options: Any) -> contract.AxSetValueSuccess:
        """Writes the value of what is at a point, unguarded."""
        return self.run("ax-set-value", {"app": app, "x": x, "y": y, "text": text}, **options)


class App:
    """The commands on one application."""

    def __init__(self, commands: Commands, name: str) -> None:
        self.commands = commands
        self.name = name

    def capture(self, path: str, **options: Any) -> Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture]:
        """Writes a picture of the application's windows. Writes a PNG file of what the user would
        see of the application's windows within the scope, on the display that shows its main
        window.
        """
        return self.commands.capture(self.name, path, **options)

    def click(self, x: float, y: float, *, button: Literal['left', 'right'] = 'left', count: int = 1, **options: Any) -> contract.BgClickSuccess:
        """Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the
        point, without moving the user's pointer or raising the window.
        """
        return self.commands.bg_click(self.name, x, y, button=button, count=count, **options)

    def scroll(self, x: float, y: float, dx: float, dy: float, **options: Any) -> contract.BgScrollSuccess:
        """Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point."""
        return self.commands.bg_scroll(self.name, x, y, dx, dy, **options)

    def move(self, x: float, y: float, **options: Any) -> contract.BgMoveSuccess:
        """Lets a window see the pointer at a point. The application believes that the pointer is
        there; the user's own does not move.
        """
        return self.commands.bg_move(self.name, x, y, **options)

    def key(self, combo: str, **options: Any) -> contract.BgKeySuccess:
        """Presses a key combination. Such as cmd+shift+s. A combination with cmd that is the
        shortcut of an enabled menu item presses that item.
        """
        return self.commands.bg_key(self.name, combo, **options)

    def type(self, text: str, **options: Any) -> contract.BgTypeSuccess:
        """Types a text. A line break is typed as shift and return."""
        return self.commands.bg_type(self.name, text, **options)

    def paste_files(self, paths: Sequence[str], **options: Any) -> contract.BgPasteFilesSuccess:
        """Pastes files, and puts the user's clipboard back. As if the files had been copied in the
        file manager. Relative paths start at the current directory. What somebody else copies
        meanwhile is left alone. Any reply may also say "copyLost": true (somebody copied
        something in the very instant at which the clipboard was cleared, and it is gone) and
        "clipboardRestored": false (the system did not take back what had been on the clipboard,
        which is empty).
        """
        return self.commands.bg_paste_files(self.name, paths, **options)

    def windows(self, **options: Any) -> Union[contract.WindowsNotRunning, contract.WindowsRunning]:
        """Lists an application's windows on screen, front to back. None smaller than 40 by 40
        points.
        """
        return self.commands.windows(self.name, **options)

    def find_text(self, texts: Sequence[str], **options: Any) -> contract.AxFindTextSuccess:
        """Counts where texts are shown."""
        return self.commands.ax_find_text(self.name, texts, **options)

    def texts_at(self, x: float, y: float, **options: Any) -> contract.AxTextsAtSuccess:
        """Tells the texts at a point."""
        return self.commands.ax_texts_at(self.name, x, y, **options)

    def press_child(self, row: str, child: str, *, role: Optional[str] = None, **options: Any) -> contract.AxPressChildSuccess:
        """Hovers a row and presses a control in it."""
        return self.commands.ax_press_child(self.name, row, child, role=role, **options)

    def at(self, x: float, y: float, **options: Any) -> contract.AxAtSuccess:
        """Tells the element at a point."""
        return self.commands.ax_at(self.name, x, y, **options)

    def press_at(self, x: float, y: float, **options: Any) -> contract.AxPressSuccess:
        """Presses the control at a point."""
        return self.commands.ax_press(self.name, x, y, **options)

    def press_in_document(self, document: str, button: str, **options: Any) -> contract.AxPressInDocumentSuccess:
        """Presses the one button of a label in the one document open."""
        return self.commands.ax_press_in_document(self.name, document, button, **options)

    def press(self, label: str, *, which: Literal['only', 'last'] = 'only', container: Optional[str] = None, **options: Any) -> contract.AxPressExactSuccess:
        """Presses the control of exactly a label. The only one, or with last the lowest one; with
        a container's label only within that group.
        """
        return self.commands.ax_press_exact(self.name, label, which=which, container=container, **options)

    def match(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxMatchSuccess:
        """Tells the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        return self.commands.ax_match(self.name, label, near_x=near_x, near_y=near_y, **options)

    def press_match(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxPressMatchSuccess:
        """Presses the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        return self.commands.ax_press_match(self.name, label, near_x=near_x, near_y=near_y, **options)

    def popup_items(self, **options: Any) -> contract.AxPopupItemsSuccess:
        """Lists the items of open pop-up menus."""
        return self.commands.ax_popup_items(self.name, **options)

    def slider(self, label: str, *, value: Optional[Union[float, Literal['increment', 'decrement']]] = None, **options: Any) -> Union[contract.AxSliderTold, contract.AxSliderStepped]:
        """Reads a slider, or moves it."""
        return self.commands.ax_slider(self.name, label, value=value, **options)

    def insert(self, label: str, mode: Literal['replace', 'message', 'end', 'new_line', 'caret'], text: str, *, near_x: float = -1, near_y: float = -1, owned_texts: Sequence[str] = (), **options: Any) -> contract.AxInsertSuccess:
        """Writes into a field and reads it back. replace makes the text the whole content, but
        refuses to destroy text that is not among the texts of the last argument, a JSON list of
        what the agent wrote itself; fields of a single line in sheets, pop-overs and dialogs
        are exempt. message does the same without that guard. end puts the text behind what the
        field holds, new_line on a new line there, caret in place of the selection. Any other
        word, a misspelt one too, is as end. A value that equals the field's label or
        placeholder counts as nothing.
        """
        return self.commands.ax_insert(self.name, label, mode, text, near_x=near_x, near_y=near_y, owned_texts=owned_texts, **options)

    def focus(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxFocusSuccess:
        """Gives a field the keyboard focus of its application."""
        return self.commands.ax_focus(self.name, label, near_x=near_x, near_y=near_y, **options)

    def reveal(self, **options: Any) -> contract.RevealSuccess:
        """Shows a hidden application, or one with all windows minimised."""
        return self.commands.reveal(self.name, **options)

    def menu(self, titles: Sequence[str], **options: Any) -> contract.AxMenuSuccess:
        """Presses a menu item by its path."""
        return self.commands.ax_menu(self.name, titles, **options)

    def menubar(self, **options: Any) -> contract.AxMenubarSuccess:
        """Lists the titles of the menu bar."""
        return self.commands.ax_menubar(self.name, **options)

    def list(self, **options: Any) -> contract.AxListSuccess:
        """Lists up to 400 elements that can be acted on."""
        return self.commands.ax_list(self.name, **options)

    def dump(self, **options: Any) -> contract.AxDumpSuccess:
        """Lists all elements, up to 4,000."""
        return self.commands.ax_dump(self.name, **options)

    def modals(self, **options: Any) -> contract.AxModalSuccess:
        """Lists sheets and dialogs with their texts and buttons."""
        return self.commands.ax_modal(self.name, **options)

    def press_in_modal(self, text: str, button: str, **options: Any) -> contract.AxModalPressSuccess:
        """Presses a button of the one dialog that reads exactly so."""
        return self.commands.ax_modal_press(self.name, text, button, **options)

    def focused(self, **options: Any) -> contract.AxFocusedSuccess:
        """Tells the element that has the keyboard focus of its application."""
        return self.commands.ax_focused(self.name, **options)

    def set_value(self, x: float, y: float, text: str, **options: Any) -> contract.AxSetValueSuccess:
        """Writes the value of what is at a point, unguarded."""
        return self.commands.ax_set_value(self.name, x, y, text, **options)


class AsyncCommands:
    """Every command as a function, which gives the reply or raises."""

    async def run(self, command: str, given: dict, **options: Any) -> Any:
        """Runs a command with its arguments by name."""
        raise NotImplementedError

    async def capture(self, app: str, path: str, **options: Any) -> Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture]:
        """Writes a picture of the application's windows. Writes a PNG file of what the user would
        see of the application's windows within the scope, on the display that shows its main
        window.
        """
        return await self.run("capture", {"app": app, "path": path}, **options)

    async def bg_click(self, app: str, x: float, y: float, *, button: Literal['left', 'right'] = 'left', count: int = 1, **options: Any) -> contract.BgClickSuccess:
        """Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the
        point, without moving the user's pointer or raising the window.
        """
        return await self.run("bg-click", {"app": app, "x": x, "y": y, "button": button, "count": count}, **options)

    async def bg_scroll(self, app: str, x: float, y: float, dx: float, dy: float, **options: Any) -> contract.BgScrollSuccess:
        """Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point."""
        return await self.run("bg-scroll", {"app": app, "x": x, "y": y, "dx": dx, "dy": dy}, **options)

    async def bg_move(self, app: str, x: float, y: float, **options: Any) -> contract.BgMoveSuccess:
        """Lets a window see the pointer at a point. The application believes that the pointer is
        there; the user's own does not move.
        """
        return await self.run("bg-move", {"app": app, "x": x, "y": y}, **options)

    async def capture_probe(self, **options: Any) -> contract.CaptureProbeSuccess:
        """Tells whether screens can be captured. Takes a tiny picture of the first display and
        throws it away. The argument is not used.
        """
        return await self.run("capture-probe", {}, **options)

    async def focus_release(self, pid: int, window: int, **options: Any) -> contract.FocusReleaseSuccess:
        """Takes back focus that another process gave. For use after a capture service that held
        focus was killed: process id and window are focusPid and focusWindow of the reply to bg-
        focus-hold.
        """
        return await self.run("focus-release", {"pid": pid, "window": window}, **options)

    async def bg_key(self, app: str, combo: str, **options: Any) -> contract.BgKeySuccess:
        """Presses a key combination. Such as cmd+shift+s. A combination with cmd that is the
        shortcut of an enabled menu item presses that item.
        """
        return await self.run("bg-key", {"app": app, "combo": combo}, **options)

    async def bg_type(self, app: str, text: str, **options: Any) -> contract.BgTypeSuccess:
        """Types a text. A line break is typed as shift and return."""
        return await self.run("bg-type", {"app": app, "text": text}, **options)

    async def bg_paste_files(self, app: str, paths: Sequence[str], **options: Any) -> contract.BgPasteFilesSuccess:
        """Pastes files, and puts the user's clipboard back. As if the files had been copied in the
        file manager. Relative paths start at the current directory. What somebody else copies
        meanwhile is left alone. Any reply may also say "copyLost": true (somebody copied
        something in the very instant at which the clipboard was cleared, and it is gone) and
        "clipboardRestored": false (the system did not take back what had been on the clipboard,
        which is empty).
        """
        return await self.run("bg-paste-files", {"app": app, "paths": paths}, **options)

    async def permissions(self, **options: Any) -> contract.PermissionsSuccess:
        """Tells which permissions are granted; never prompts."""
        return await self.run("permissions", {}, **options)

    async def scene(self, **options: Any) -> contract.SceneSuccess:
        """Tells the application in front and where the pointer is. Without an application in front
        pid is 0 and bundleId empty.
        """
        return await self.run("scene", {}, **options)

    async def lock_now(self, **options: Any) -> contract.LockNowSuccess:
        """Locks the screen."""
        return await self.run("lock-now", {}, **options)

    async def session(self, **options: Any) -> contract.SessionSuccess:
        """Tells whether the screen is locked, or another user in front."""
        return await self.run("session", {}, **options)

    async def windows(self, app: str, **options: Any) -> Union[contract.WindowsNotRunning, contract.WindowsRunning]:
        """Lists an application's windows on screen, front to back. None smaller than 40 by 40
        points.
        """
        return await self.run("windows", {"app": app}, **options)

    async def ax_find_text(self, app: str, texts: Sequence[str], **options: Any) -> contract.AxFindTextSuccess:
        """Counts where texts are shown."""
        return await self.run("ax-find-text", {"app": app, "texts": texts}, **options)

    async def ax_texts_at(self, app: str, x: float, y: float, **options: Any) -> contract.AxTextsAtSuccess:
        """Tells the texts at a point."""
        return await self.run("ax-texts-at", {"app": app, "x": x, "y": y}, **options)

    async def ax_press_child(self, app: str, row: str, child: str, *, role: Optional[str] = None, **options: Any) -> contract.AxPressChildSuccess:
        """Hovers a row and presses a control in it."""
        return await self.run("ax-press-child", {"app": app, "row": row, "child": child, "role": role}, **options)

    async def ax_at(self, app: str, x: float, y: float, **options: Any) -> contract.AxAtSuccess:
        """Tells the element at a point."""
        return await self.run("ax-at", {"app": app, "x": x, "y": y}, **options)

    async def ax_press(self, app: str, x: float, y: float, **options: Any) -> contract.AxPressSuccess:
        """Presses the control at a point."""
        return await self.run("ax-press", {"app": app, "x": x, "y": y}, **options)

    async def ax_press_in_document(self, app: str, document: str, button: str, **options: Any) -> contract.AxPressInDocumentSuccess:
        """Presses the one button of a label in the one document open."""
        return await self.run("ax-press-in-document", {"app": app, "document": document, "button": button}, **options)

    async def ax_press_exact(self, app: str, label: str, *, which: Literal['only', 'last'] = 'only', container: Optional[str] = None, **options: Any) -> contract.AxPressExactSuccess:
        """Presses the control of exactly a label. The only one, or with last the lowest one; with
        a container's label only within that group.
        """
        return await self.run("ax-press-exact", {"app": app, "label": label, "which": which, "container": container}, **options)

    async def ax_match(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxMatchSuccess:
        """Tells the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        return await self.run("ax-match", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)

    async def ax_press_match(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxPressMatchSuccess:
        """Presses the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        return await self.run("ax-press-match", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)

    async def ax_popup_items(self, app: str, **options: Any) -> contract.AxPopupItemsSuccess:
        """Lists the items of open pop-up menus."""
        return await self.run("ax-popup-items", {"app": app}, **options)

    async def ax_slider(self, app: str, label: str, *, value: Optional[Union[float, Literal['increment', 'decrement']]] = None, **options: Any) -> Union[contract.AxSliderTold, contract.AxSliderStepped]:
        """Reads a slider, or moves it."""
        return await self.run("ax-slider", {"app": app, "label": label, "value": value}, **options)

    async def ax_insert(self, app: str, label: str, mode: Literal['replace', 'message', 'end', 'new_line', 'caret'], text: str, *, near_x: float = -1, near_y: float = -1, owned_texts: Sequence[str] = (), **options: Any) -> contract.AxInsertSuccess:
        """Writes into a field and reads it back. replace makes the text the whole content, but
        refuses to destroy text that is not among the texts of the last argument, a JSON list of
        what the agent wrote itself; fields of a single line in sheets, pop-overs and dialogs
        are exempt. message does the same without that guard. end puts the text behind what the
        field holds, new_line on a new line there, caret in place of the selection. Any other
        word, a misspelt one too, is as end. A value that equals the field's label or
        placeholder counts as nothing.
        """
        return await self.run("ax-insert", {"app": app, "label": label, "mode": mode, "text": text, "nearX": near_x, "nearY": near_y, "ownedTexts": owned_texts}, **options)

    async def ax_focus(self, app: str, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxFocusSuccess:
        """Gives a field the keyboard focus of its application."""
        return await self.run("ax-focus", {"app": app, "label": label, "nearX": near_x, "nearY": near_y}, **options)

    async def reveal(self, app: str, **options: Any) -> contract.RevealSuccess:
        """Shows a hidden application, or one with all windows minimised."""
        return await self.run("reveal", {"app": app}, **options)

    async def ax_menu(self, app: str, titles: Sequence[str], **options: Any) -> contract.AxMenuSuccess:
        """Presses a menu item by its path."""
        return await self.run("ax-menu", {"app": app, "titles": titles}, **options)

    async def ax_menubar(self, app: str, **options: Any) -> contract.AxMenubarSuccess:
        """Lists the titles of the menu bar."""
        return await self.run("ax-menubar", {"app": app}, **options)

    async def ax_list(self, app: str, **options: Any) -> contract.AxListSuccess:
        """Lists up to 400 elements that can be acted on."""
        return await self.run("ax-list", {"app": app}, **options)

    async def ax_dump(self, app: str, **options: Any) -> contract.AxDumpSuccess:
        """Lists all elements, up to 4,000."""
        return await self.run("ax-dump", {"app": app}, **options)

    async def ax_modal(self, app: str, **options: Any) -> contract.AxModalSuccess:
        """Lists sheets and dialogs with their texts and buttons."""
        return await self.run("ax-modal", {"app": app}, **options)

    async def ax_modal_press(self, app: str, text: str, button: str, **options: Any) -> contract.AxModalPressSuccess:
        """Presses a button of the one dialog that reads exactly so."""
        return await self.run("ax-modal-press", {"app": app, "text": text, "button": button}, **options)

    async def ax_focused(self, app: str, **options: Any) -> contract.AxFocusedSuccess:
        """Tells the element that has the keyboard focus of its application."""
        return await self.run("ax-focused", {"app": app}, **options)

    async def ax_set_value(self, app: str, x: float, y: float, text: str, **options: Any) -> contract.AxSetValueSuccess:
        """Writes the value of what is at a point, unguarded."""
        return await self.run("ax-set-value", {"app": app, "x": x, "y": y, "text": text}, **options)


class AsyncApp:
    """The commands on one application."""

    def __init__(self, commands: AsyncCommands, name: str) -> None:
        self.commands = commands
        self.name = name

    async def capture(self, path: str, **options: Any) -> Union[contract.CaptureNotRunning, contract.CaptureNoWindow, contract.CapturePicture]:
        """Writes a picture of the application's windows. Writes a PNG file of what the user would
        see of the application's windows within the scope, on the display that shows its main
        window.
        """
        return await self.commands.capture(self.name, path, **options)

    async def click(self, x: float, y: float, *, button: Literal['left', 'right'] = 'left', count: int = 1, **options: Any) -> contract.BgClickSuccess:
        """Clicks in a window that stays where it is. Clicks once or, with count 2, twice at the
        point, without moving the user's pointer or raising the window.
        """
        return await self.commands.bg_click(self.name, x, y, button=button, count=count, **options)

    async def scroll(self, x: float, y: float, dx: float, dy: float, **options: Any) -> contract.BgScrollSuccess:
        """Scrolls in a window that stays where it is. Scrolls by dx and dy lines at the point."""
        return await self.commands.bg_scroll(self.name, x, y, dx, dy, **options)

    async def move(self, x: float, y: float, **options: Any) -> contract.BgMoveSuccess:
        """Lets a window see the pointer at a point. The application believes that the pointer is
        there; the user's own does not move.
        """
        return await self.commands.bg_move(self.name, x, y, **options)

    async def key(self, combo: str, **options: Any) -> contract.BgKeySuccess:
        """Presses a key combination. Such as cmd+shift+s. A combination with cmd that is the
        shortcut of an enabled menu item presses that item.
        """
        return await self.commands.bg_key(self.name, combo, **options)

    async def type(self, text: str, **options: Any) -> contract.BgTypeSuccess:
        """Types a text. A line break is typed as shift and return."""
        return await self.commands.bg_type(self.name, text, **options)

    async def paste_files(self, paths: Sequence[str], **options: Any) -> contract.BgPasteFilesSuccess:
        """Pastes files, and puts the user's clipboard back. As if the files had been copied in the
        file manager. Relative paths start at the current directory. What somebody else copies
        meanwhile is left alone. Any reply may also say "copyLost": true (somebody copied
        something in the very instant at which the clipboard was cleared, and it is gone) and
        "clipboardRestored": false (the system did not take back what had been on the clipboard,
        which is empty).
        """
        return await self.commands.bg_paste_files(self.name, paths, **options)

    async def windows(self, **options: Any) -> Union[contract.WindowsNotRunning, contract.WindowsRunning]:
        """Lists an application's windows on screen, front to back. None smaller than 40 by 40
        points.
        """
        return await self.commands.windows(self.name, **options)

    async def find_text(self, texts: Sequence[str], **options: Any) -> contract.AxFindTextSuccess:
        """Counts where texts are shown."""
        return await self.commands.ax_find_text(self.name, texts, **options)

    async def texts_at(self, x: float, y: float, **options: Any) -> contract.AxTextsAtSuccess:
        """Tells the texts at a point."""
        return await self.commands.ax_texts_at(self.name, x, y, **options)

    async def press_child(self, row: str, child: str, *, role: Optional[str] = None, **options: Any) -> contract.AxPressChildSuccess:
        """Hovers a row and presses a control in it."""
        return await self.commands.ax_press_child(self.name, row, child, role=role, **options)

    async def at(self, x: float, y: float, **options: Any) -> contract.AxAtSuccess:
        """Tells the element at a point."""
        return await self.commands.ax_at(self.name, x, y, **options)

    async def press_at(self, x: float, y: float, **options: Any) -> contract.AxPressSuccess:
        """Presses the control at a point."""
        return await self.commands.ax_press(self.name, x, y, **options)

    async def press_in_document(self, document: str, button: str, **options: Any) -> contract.AxPressInDocumentSuccess:
        """Presses the one button of a label in the one document open."""
        return await self.commands.ax_press_in_document(self.name, document, button, **options)

    async def press(self, label: str, *, which: Literal['only', 'last'] = 'only', container: Optional[str] = None, **options: Any) -> contract.AxPressExactSuccess:
        """Presses the control of exactly a label. The only one, or with last the lowest one; with
        a container's label only within that group.
        """
        return await self.commands.ax_press_exact(self.name, label, which=which, container=container, **options)

    async def match(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxMatchSuccess:
        """Tells the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        return await self.commands.ax_match(self.name, label, near_x=near_x, near_y=near_y, **options)

    async def press_match(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxPressMatchSuccess:
        """Presses the element that matches a label best. The point, or -1 -1, decides between
        several.
        """
        return await self.commands.ax_press_match(self.name, label, near_x=near_x, near_y=near_y, **options)

    async def popup_items(self, **options: Any) -> contract.AxPopupItemsSuccess:
        """Lists the items of open pop-up menus."""
        return await self.commands.ax_popup_items(self.name, **options)

    async def slider(self, label: str, *, value: Optional[Union[float, Literal['increment', 'decrement']]] = None, **options: Any) -> Union[contract.AxSliderTold, contract.AxSliderStepped]:
        """Reads a slider, or moves it."""
        return await self.commands.ax_slider(self.name, label, value=value, **options)

    async def insert(self, label: str, mode: Literal['replace', 'message', 'end', 'new_line', 'caret'], text: str, *, near_x: float = -1, near_y: float = -1, owned_texts: Sequence[str] = (), **options: Any) -> contract.AxInsertSuccess:
        """Writes into a field and reads it back. replace makes the text the whole content, but
        refuses to destroy text that is not among the texts of the last argument, a JSON list of
        what the agent wrote itself; fields of a single line in sheets, pop-overs and dialogs
        are exempt. message does the same without that guard. end puts the text behind what the
        field holds, new_line on a new line there, caret in place of the selection. Any other
        word, a misspelt one too, is as end. A value that equals the field's label or
        placeholder counts as nothing.
        """
        return await self.commands.ax_insert(self.name, label, mode, text, near_x=near_x, near_y=near_y, owned_texts=owned_texts, **options)

    async def focus(self, label: str, *, near_x: float = -1, near_y: float = -1, **options: Any) -> contract.AxFocusSuccess:
        """Gives a field the keyboard focus of its application."""
        return await self.commands.ax_focus(self.name, label, near_x=near_x, near_y=near_y, **options)

    async def reveal(self, **options: Any) -> contract.RevealSuccess:
        """Shows a hidden application, or one with all windows minimised."""
        return await self.commands.reveal(self.name, **options)

    async def menu(self, titles: Sequence[str], **options: Any) -> contract.AxMenuSuccess:
        """Presses a menu item by its path."""
        return await self.commands.ax_menu(self.name, titles, **options)

    async def menubar(self, **options: Any) -> contract.AxMenubarSuccess:
        """Lists the titles of the menu bar."""
        return await self.commands.ax_menubar(self.name, **options)

    async def list(self, **options: Any) -> contract.AxListSuccess:
        """Lists up to 400 elements that can be acted on."""
        return await self.commands.ax_list(self.name, **options)

    async def dump(self, **options: Any) -> contract.AxDumpSuccess:
        """Lists all elements, up to 4,000."""
        return await self.commands.ax_dump(self.name, **options)

    async def modals(self, **options: Any) -> contract.AxModalSuccess:
        """Lists sheets and dialogs with their texts and buttons."""
        return await self.commands.ax_modal(self.name, **options)

    async def press_in_modal(self, text: str, button: str, **options: Any) -> contract.AxModalPressSuccess:
        """Presses a button of the one dialog that reads exactly so."""
        return await self.commands.ax_modal_press(self.name, text, button, **options)

    async def focused(self, **options: Any) -> contract.AxFocusedSuccess:
        """Tells the element that has the keyboard focus of its application."""
        return await self.commands.ax_focused(self.name, **options)

    async def set_value(self, x: float, y: float, text: str, **options: Any) -> contract.AxSetValueSuccess:
        """Writes the value of what is at a point, unguarded."""
        return await self.commands.ax_set_value(self.name, x, y, text, **options)
