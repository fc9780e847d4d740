; The installer for one user. Built by scripts/windows:
;
;   makensis -DVERSION=<version> -DSTAGE=<folder of the files> -DFILES=<their list> -DICON=<icon>
;       -DOUTPUT=<setup.exe> MarvikTools.nsi
;
; /S installs without questions, /D=<folder> into another folder. The uninstaller keeps the saved
; settings of the cameras unless the box on its page or /SETTINGS selects their removal.
;
; It never requests administrator rights and must not run as SYSTEM: an installer of this NSIS (3.08)
; that runs as SYSTEM can be made to use files in a folder that other users may write (CVE-2026-42171).
; When the user runs it, such a file gains no additional rights.

; For 64-bit Windows only; it does not start on 32-bit Windows.
Target amd64-unicode
ManifestDPIAware true
RequestExecutionLevel user
SetCompressor /SOLID lzma

!include MUI2.nsh
!include nsDialogs.nsh
!include FileFunc.nsh
!include LogicLib.nsh

!define PRODUCT MarvikTools
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"

Name "${PRODUCT}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\${PRODUCT}"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" InstallLocation
BrandingText "${PRODUCT} ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${PRODUCT}"
VIAddVersionKey FileDescription "${PRODUCT} Setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey CompanyName "Sorvanta"
VIAddVersionKey LegalCopyright "Sorvanta"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\${PRODUCT}.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
UninstPage custom un.askAboutSettings un.readAnswer
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; This message ends the program's event loop like "Quit" in its menu: the program releases the camera and
; saves its data. The program hides in the tray when its window is closed, so hidden windows are searched
; too. The installer waits for the program and never kills it, because it may be writing firmware to a
; camera.
!macro closeProgram prefix
Function ${prefix}closeProgram
    ; Its hidden window tells which process is the program's: a folder of the name has a window with the
    ; same title.
    System::Call 'user32::FindWindowW(w "velmarin", p 0) p .r0'
    ${If} $0 P= 0
        Return
    ${EndIf}
    System::Call 'user32::GetWindowThreadProcessId(p r0, *i .r2)'
    StrCpy $0 0
    ${Do}
        System::Call 'user32::FindWindowExW(p 0, p r0, p 0, w "${PRODUCT}") p .r0'
        ${If} $0 P= 0
            Return
        ${EndIf}
        System::Call 'user32::GetWindowThreadProcessId(p r0, *i .r3) i .r1'
    ${LoopUntil} $3 = $2
    System::Call 'kernel32::OpenProcess(i 0x00100000, i 0, i r2) p .r3' ; SYNCHRONIZE
    System::Call 'user32::PostThreadMessageW(i r1, i 0x0012, p 0, p 0)' ; WM_QUIT
    System::Call 'kernel32::WaitForSingleObject(p r3, i 15000) i .r4'
    System::Call 'kernel32::CloseHandle(p r3)'
    ${If} $4 <> 0
        MessageBox MB_OK|MB_ICONEXCLAMATION \
            "${PRODUCT} is still at work. Quit it in the menu of its tray icon, then try again." /SD IDOK
        SetErrorLevel 2
        Abort
    ${EndIf}
FunctionEnd
!macroend
!insertmacro closeProgram ""
!insertmacro closeProgram "un."

Section
    Call closeProgram
    ; The version before takes its own files away. It runs from where it lies, which makes it possible
    ; to wait for it, but keeps it from removing itself.
    ReadRegStr $5 HKCU "${UNINSTALL_KEY}" InstallLocation
    ${If} $5 != ""
    ${AndIf} ${FileExists} "$5\Uninstall.exe"
        ExecWait '"$5\Uninstall.exe" /S _?=$5'
        Delete "$5\Uninstall.exe"
        RMDir "$5"
    ${EndIf}

    SetOutPath "$INSTDIR"
    File /r "${STAGE}/*"
    WriteUninstaller "$INSTDIR\Uninstall.exe"
    CreateShortCut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\${PRODUCT}.exe"

    WriteRegStr HKCU "${UNINSTALL_KEY}" DisplayName "${PRODUCT}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\${PRODUCT}.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" Publisher "Sorvanta"
    WriteRegStr HKCU "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" NoModify 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" NoRepair 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" EstimatedSize $0
SectionEnd

Var removeSettings
Var settingsBox

Function un.onInit
    StrCpy $removeSettings 0
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/SETTINGS" $1
    ${IfNot} ${Errors}
        StrCpy $removeSettings 1
    ${EndIf}
FunctionEnd

Function un.askAboutSettings
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateLabel} 0 0 100% 24u "${PRODUCT} will be removed from this computer."
    Pop $0
    ${NSD_CreateCheckbox} 0 30u 100% 12u "Remove the saved settings of my cameras, too"
    Pop $settingsBox
    nsDialogs::Show
FunctionEnd

Function un.readAnswer
    ${NSD_GetState} $settingsBox $0
    ${If} $0 = ${BST_CHECKED}
        StrCpy $removeSettings 1
    ${EndIf}
FunctionEnd

Section Uninstall
    Call un.closeProgram
    ; Only what was installed goes: the folder may have been chosen, with other things in it.
    !include "${FILES}"
    ; A copy of the uninstaller runs; the one in the folder has started it and is about to end. Run in
    ; its own place by an installer, it is left to that.
    ${If} $EXEDIR != $INSTDIR
        ${ForEach} $0 1 100 + 1
            Delete "$INSTDIR\Uninstall.exe"
            ${IfNot} ${FileExists} "$INSTDIR\Uninstall.exe"
                ${ExitFor}
            ${EndIf}
            Sleep 100
        ${Next}
    ${EndIf}
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\${PRODUCT}.lnk"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
    ${If} $removeSettings = 1
        RMDir /r "$LOCALAPPDATA\${PRODUCT}"
    ${EndIf}
SectionEnd
