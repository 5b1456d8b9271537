#pragma once

#include "core/CustomData.h"
#include "dialogs/FieldBinding.h"
#include "framework/ui/AnchorLayout.h"
#include "framework/ui/Wnd.h"

#include <initializer_list>
#include <vector>

struct AFX_CMDHANDLERINFO;

/// The part of a dialog or a page that shows values of a property store in its controls and brings them back.
///
/// A page or dialog embeds one, declares its fields (AddField) and anchors, binds it, and forwards what its
/// window gets. The window's object and the store belong to others; they, or at least the binding, outlive
/// every call here. The window may live later than the part, or never: until its OnInitDialog, and after its
/// end, the part has the values that it was last filled with. Fields whose control is missing do so always.
///
/// A field that the user has not changed keeps its stored value bit for bit, also one that its control cannot
/// show in full, that lies outside the range, or is of a kind that the field is not; it is not validated. A
/// control counts as changed while it differs from what filling left in it. A value that the store lacks is
/// shown, and by every save stored, as the default of its field. What no field names stays untouched.
/// docs/dialogs.md shows how to use it.
///
/// Several fields and parts may share a value of the bound store: an unchanged field that was filled from it
/// leaves alone what has come to it since. One thread: the window's.
class VAK_API CDefaultDlg
{
public:
    /// Told that the user has changed a field's control; `control` is the field's.
    using ChangeCallback = void (*)(int control, void* user);

    CDefaultDlg() = default;
    virtual ~CDefaultDlg() = default;
    CDefaultDlg(const CDefaultDlg&) = delete;
    CDefaultDlg& operator=(const CDefaultDlg&) = delete;

    /// @name Declaring; before the window is there
    /// @{
    void AddField(const vak::FieldBinding& field);
    void AddFields(std::initializer_list<vak::FieldBinding> fields);
    /// Ties a control to those edges of the window (vak::AnchorEdge bits) when the window is resized.
    void AddAnchor(int control, unsigned int edges);
    /// The size of the client area, in pixels, below which controls stay where they are (and to which a frame
    /// is limited); that of the template until it is set.
    void SetMinimumSize(CSize client);
    /// Null for none. Filling the controls does not call it.
    void SetChangeCallback(ChangeCallback callback, void* user);
    /// @}

    /// Binds the part to a window's object and a store; both may be null and neither is owned. Nothing is
    /// shown yet. With another store than before, what the part was filled with is forgotten; binding it once
    /// more to both changes nothing.
    void Bind(CWnd* window, CCustomData* store);
    CWnd* GetWindow() const { return m_window; }
    CCustomData* GetStore() const { return m_store; }
    /// Non-zero while the bound object has a window.
    int HasWindow() const;

    /// @name Filling and saving
    /// @{
    /// Takes the values of all fields from `store`, which need not be the bound one, and shows them if there
    /// is a window. What the user had entered is forgotten.
    void ReinitDialog(const CCustomData& store);
    /// Validates what the user has changed. On failure one message tells all fields that failed, the first of
    /// them, in the order in which they were added, is selected with what was typed, nothing is saved, and 0
    /// is returned. Else returns 1, and if `save` is non-zero all fields are in `store`. What was saved to
    /// the bound store, and only that, counts as unchanged from then on.
    int ValidateData(int save, CCustomData& store);
    /// Saves without validating: a field in which something invalid was entered counts as unchanged. Without
    /// a window that is what the part was last filled with.
    void SaveData(CCustomData& store);
    /// Brings unchanged fields up to date with the bound store, where their values may have changed since
    /// they were filled, and selects a field that failed while the window was hidden. Takes fields whose
    /// control lies in `first` to `last`, all of them for (0, 0). Returns how many were filled anew.
    int VerifyData(unsigned int first, unsigned int last);
    /// Non-zero if the user has changed a field since it was filled or saved.
    int IsModified() const;
    /// @}

    /// @name What the window forwards, before its own treatment
    /// Non-zero from the first three: it is settled.
    /// @{
    /// Selects all of a field's edit control at Ctrl+A.
    virtual BOOL PreTranslateMessage(MSG* message);
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    /// Opens the chooser of a colour's button. `extra` and `info` are not used.
    virtual BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info);
    virtual void OnSize(UINT type, int cx, int cy);
    /// The controls exist: notes their places for the anchors and fills them. Returns 1.
    virtual BOOL OnInitDialog();
    /// @}

private:
    /// A field with what it last got from a store, or was saved as.
    struct Field
    {
        vak::FieldBinding binding;
        /// The value as text, as it is given to the control.
        CString value;
        /// What the control made of it.
        CString shown;
        /// What the change callback last knew of.
        CString told;
        bool isShown = false;
    };
    struct AnchoredControl
    {
        int control;
        unsigned int edges;
    };

    HWND ControlOf(const Field& field) const;
    CString ContentOf(const Field& field) const;
    vak::FieldBinding BindingOf(const Field& field) const;
    bool IsChanged(const Field& field) const;
    bool IsSavable(const Field& field) const;
    void TakeValue(Field& field, const CCustomData& store);
    void ShowValues();
    void ShowValue(Field& field);
    void NoteShown(Field& field);
    void SaveField(const Field& field, CCustomData& store) const;
    void KeepSaved(Field& field, const CCustomData& store);
    void WriteBack(const Field& field, CCustomData& store) const;
    int RefreshUnchanged(const CCustomData& store, unsigned int first, unsigned int last);
    CString TellFaults();
    CString TellFault(const Field& field) const;
    void SelectFailed();
    Field* FieldShownBy(HWND control);
    void OnControlChange(HWND control, UINT code);
    void OnScroll(HWND control);
    BOOL OnDrawItem(const DRAWITEMSTRUCT& item, LRESULT* result);
    void TellChange(Field& field);
    void ChooseColor(Field& field);

    CWnd* m_window = nullptr;
    CCustomData* m_store = nullptr;
    ChangeCallback m_changeCallback = nullptr;
    void* m_changeUser = nullptr;
    std::vector<Field> m_fields;
    /// The stored values of the fields as they were filled or saved.
    CCustomData m_values;
    bool m_isFilled = false;
    /// Whether the bound store has last filled the fields, or got their values.
    bool m_showsStore = false;
    /// The control of the field to select once the window is visible; 0 for none.
    int m_failedControl = 0;
    bool m_isFilling = false;
    std::vector<AnchoredControl> m_anchors;
    CSize m_minimum{0, 0};
    vak::AnchorLayout m_layout;
};
