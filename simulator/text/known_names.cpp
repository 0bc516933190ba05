#include "simulator/text/known_names.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace simulator {

namespace {

// The last two are subroles to macOS.
constexpr std::string_view roleNames =
    "AXApplication AXBrowser AXBusyIndicator AXButton AXCell AXCheckBox AXColorWell AXColumn "
    "AXComboBox AXDateField AXDateTimeArea AXDisclosureTriangle AXDockItem AXDrawer "
    "AXGenericElement AXGrid AXGroup AXGrowArea AXHandle AXHeading AXHelpTag AXImage AXImageMap "
    "AXIncrementor AXLayoutArea AXLayoutItem AXLevelIndicator AXLink AXList AXListMarker AXMatte "
    "AXMenu AXMenuBar AXMenuBarItem AXMenuButton AXMenuItem AXOutline AXPage AXPopUpButton "
    "AXPopover AXProgressIndicator AXRadioButton AXRadioGroup AXRelevanceIndicator AXRow AXRuler "
    "AXRulerMarker AXScrollArea AXScrollBar AXSheet AXSlider AXSplitGroup AXSplitter AXStaticText "
    "AXSystemWide AXTabGroup AXTable AXTextArea AXTextField AXTimeField AXToolbar AXUnknown "
    "AXValueIndicator AXWebArea AXWindow AXSearchField AXSwitch";

constexpr std::string_view subroleNames =
    "AXApplicationAlert AXApplicationAlertDialog AXApplicationDialog AXApplicationDockItem "
    "AXApplicationGroup AXApplicationLog AXApplicationMarquee AXApplicationStatus "
    "AXApplicationTimer AXAudio AXCloseButton AXCodeStyleGroup AXCollectionList AXContentList "
    "AXDecrementArrow AXDecrementPage AXDefinition AXDefinitionList AXDeleteStyleGroup "
    "AXDescriptionList AXDetails AXDialog AXDockExtraDockItem AXDocument AXDocumentArticle "
    "AXDocumentDockItem AXDocumentMath AXDocumentNote AXDocumentRegion AXEmptyGroup AXFieldset "
    "AXFloatingWindow AXFolderDockItem AXFullScreenButton AXIncrementArrow AXIncrementPage "
    "AXInsertStyleGroup AXLandmarkBanner AXLandmarkComplementary AXLandmarkContentInfo "
    "AXLandmarkMain AXLandmarkNavigation AXLandmarkRegion AXLandmarkSearch AXMeter "
    "AXMinimizeButton AXMinimizedWindowDockItem AXOutlineRow AXProcessSwitcherList "
    "AXRatingIndicator AXRubyInline AXSearchField AXSectionList AXSecureTextField "
    "AXSeparatorDockItem AXSortButton AXStandardWindow AXSuggestion AXSummary AXSwitch "
    "AXSystemDialog AXSystemFloatingWindow AXTabButton AXTabPanel AXTableRow AXTerm "
    "AXTextAttachment AXTextLink AXTimeline AXTimeGroup AXToggle AXToolbarButton AXTrashDockItem "
    "AXURLDockItem AXUnknown AXUserInterfaceTooltip AXVideo AXWebApplication AXZoomButton";

constexpr std::string_view attributeNames =
    "AXARIAAtomic AXARIABusy AXARIAColumnIndex AXARIACurrent AXARIALive AXARIAPosInSet "
    "AXARIARelevant AXARIARowIndex AXARIASetSize AXAccessKey AXActivationPoint AXAllowedValues "
    "AXAlternateUIVisible AXAutocompleteValue AXBlockQuoteLevel AXCancelButton AXChildren "
    "AXChildrenInNavigationOrder AXClearButton AXCloseButton AXColumnCount "
    "AXColumnHeaderUIElements AXColumnIndexRange AXColumnTitles AXColumns "
    "AXContainsProtectedContent AXContents AXCriticalValue AXCustomActions AXCustomContent "
    "AXDOMClassList AXDOMIdentifier AXDateTimeComponents AXDecrementButton AXDefaultButton "
    "AXDescription AXDisclosedByRow AXDisclosedRows AXDisclosing AXDisclosureLevel AXDocument "
    "AXDropEffects AXEdited AXEditable AXEditableAncestor AXElementBusy AXEnabled AXEndTextMarker "
    "AXEnhancedUserInterface AXExpanded AXExpandedTextValue AXExtrasMenuBar AXFilename "
    "AXFocusableAncestor AXFocused AXFocusedApplication AXFocusedUIElement AXFocusedWindow "
    "AXFrame AXFrontmost AXFullScreen AXFullScreenButton AXGrabbed AXGrowArea AXHandles "
    "AXHasDocumentRoleAncestor AXHasPopup AXHasWebApplicationAncestor AXHeader AXHelp AXHidden "
    "AXHighestEditableAncestor AXHorizontalScrollBar AXHorizontalUnitDescription "
    "AXHorizontalUnits AXHourField AXIdentifier AXImage AXIncrementButton AXIncrementor AXIndex "
    "AXInsertionPointLineNumber AXInvalid AXIsApplicationRunning AXIsEditable AXKeyShortcutsValue "
    "AXLabelUIElements AXLabelValue AXLanguage AXLinkRelationshipType AXLinkUIElements "
    "AXLinkedUIElements AXLoaded AXLoadingProgress AXMain AXMainWindow AXManualAccessibility "
    "AXMarkerGroupUIElement AXMarkerType AXMarkerTypeDescription AXMarkerUIElements "
    "AXMarkerValues AXMatteContentUIElement AXMatteHole AXMaxValue AXMenuBar AXMenuItemCmdChar "
    "AXMenuItemCmdGlyph AXMenuItemCmdModifiers AXMenuItemCmdVirtualKey AXMenuItemMarkChar "
    "AXMenuItemPrimaryUIElement AXMinValue AXMinimizeButton AXMinimized AXMinuteField AXModal "
    "AXMonthField AXNextContents AXNumberOfCharacters AXOrderedByRow AXOrientation "
    "AXOverflowButton AXOwns AXParent AXPath AXPlaceholderValue AXPopupValue AXPosition "
    "AXPreventKeyboardDOMEventDispatch AXPreviousContents AXProxy AXRequired AXRole "
    "AXRoleDescription AXRowCount AXRowHeaderUIElements AXRowIndexRange AXRows AXScreenPoint "
    "AXSearchButton AXSearchMenu AXSecondField AXSelected AXSelectedCells AXSelectedChildren "
    "AXSelectedColumns AXSelectedRows AXSelectedText AXSelectedTextMarkerRange "
    "AXSelectedTextRange AXSelectedTextRanges AXServesAsTitleForUIElements AXSharedCharacterRange "
    "AXSharedFocusElements AXSharedTextUIElements AXShownMenuUIElement AXSize AXSortDirection "
    "AXSplitters AXStartTextMarker AXSubrole AXTabs AXText AXTextInputMarkedRange AXTitle "
    "AXTitleUIElement AXToolbarButton AXTopLevelUIElement AXURL AXUnitDescription AXUnits AXValue "
    "AXValueAutofillAvailable AXValueAutofillType AXValueDescription AXValueIncrement "
    "AXValueWraps AXVerticalScrollBar AXVerticalUnitDescription AXVerticalUnits AXVisibleCells "
    "AXVisibleCharacterRange AXVisibleChildren AXVisibleColumns AXVisibleRows AXVisibleText "
    "AXVisited AXWarningValue AXWindow AXWindows AXYearField AXZoomButton";

constexpr std::string_view actionNames =
    "AXCancel AXConfirm AXDecrement AXDelete AXIncrement AXPick AXPress AXRaise "
    "AXScrollDownByPage AXScrollLeftByPage AXScrollRightByPage AXScrollToVisible AXScrollUpByPage "
    "AXShowAlternateUI AXShowDefaultUI AXShowMenu";

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find(' '), text.size());
    words.emplace_back(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return words;
}

}  // namespace

const char* textOf(NameKind kind) {
  constexpr std::array texts = {"role", "subrole", "attribute", "action"};
  return texts[static_cast<std::size_t>(kind)];
}

const std::vector<std::string>& knownNames(NameKind kind) {
  static const std::array names = {wordsOf(roleNames), wordsOf(subroleNames),
                                   wordsOf(attributeNames), wordsOf(actionNames)};
  return names[static_cast<std::size_t>(kind)];
}

bool isKnown(NameKind kind, const std::string& name) {
  const auto& names = knownNames(kind);
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace simulator
