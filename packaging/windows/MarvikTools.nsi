; The installer. Built by scripts/windows:
;
;   makensis -DVERSION=<version> -DSTAGE=<folder of the files> -DFILES=<their lists> -DICON=<icon>
;       -DTOOLS=<SetupTools.dll> -DSIGN=<command> -DOUTPUT=<setup.exe> MarvikTools.nsi
;
; It installs for one user and needs no rights. /ALLUSERS installs for all users and needs an elevated
; process; without questions it does not request one. /S installs without questions, /D=<folder> into
; another folder. The uninstaller keeps the saved settings of the cameras unless the box on its page or
; /SETTINGS selects their removal. An installer calls it with /FILES, which removes nothing but files.
;
; It does nothing as SYSTEM, see stopForSystem.

; For 64-bit Windows only; it does not start on 32-bit Windows.
Target amd64-unicode
ManifestDPIAware true
RequestExecutionLevel user
SetCompressor /SOLID lzma
; A file that cannot be written ends the installation.
AllowSkipFiles off

!include MUI2.nsh
!include nsDialogs.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include "${FILES}"

!define PRODUCT MarvikTools
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"

; What a run without questions ends with, besides 0. docs/windows.md lists them.
!define AT_WORK 10
!define NOT_WRITTEN 11
!define NOT_ELEVATED 12
!define IS_SYSTEM 13
!define OTHER_PACKAGE 14

Name "${PRODUCT}"
OutFile "${OUTPUT}"
BrandingText "${PRODUCT} ${VERSION}"
!finalize '"${SIGN}" "%1"'
!uninstfinalize '"${SIGN}" "%1"'

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${PRODUCT}"
VIAddVersionKey FileDescription "${PRODUCT} Setup"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey CompanyName "Sorvanta"
VIAddVersionKey LegalCopyright "Sorvanta"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION startProgram
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
UninstPage custom un.askAboutSettings un.readAnswer
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Var forAll ; 1 when the installation is for all users
Var old ; the folder of the version before, or nothing
Var swapped ; how far the new folder has taken the place of the old one: 0, 1, 2

!macro stop code text
    MessageBox MB_OK|MB_ICONEXCLAMATION "${text}" /SD IDOK
    SetErrorLevel ${code}
    Abort
!macroend

; ClearErrors, then the operation up to ten times in five seconds: a virus scanner holds a new file open
; for a moment. The error flag tells whether it failed.
!macro repeated operation
    !define ID ${__COUNTER__}
    Push $R9
    StrCpy $R9 10
again${ID}:
    ClearErrors
    ${operation}
    IfErrors 0 done${ID}
    IntOp $R9 $R9 - 1
    IntCmp $R9 0 failed${ID}
    Sleep 500
    Goto again${ID}
failed${ID}:
    SetErrors
done${ID}:
    Pop $R9
    !undef ID
!macroend

!macro commonFunctions prefix
; An installer of this NSIS (3.08) that runs as SYSTEM can be made to use files in a folder that other
; users may write (CVE-2026-42171). So it ends before it loads a plug-in or writes a file of the program.
; An uninstaller runs as a copy in that folder by then, unless it was started with _?=. The package of
; Windows Installer is for programs that install software as SYSTEM.
Function ${prefix}stopForSystem
    Push $R0
    Push $R1
    StrCpy $R0 -1
    ${Do}
        IntOp $R0 $R0 + 1
        StrCpy $R1 $LOCALAPPDATA 22 $R0
        ${If} $R1 == "\config\systemprofile\"
            SetErrorLevel ${IS_SYSTEM}
            Quit
        ${EndIf}
    ${LoopUntil} $R1 == ""
    Pop $R1
    Pop $R0
FunctionEnd

; Leaves 1 on the stack when the process may write what belongs to all users.
Function ${prefix}isElevated
    UserInfo::GetAccountType
    Exch $R0
    ${If} $R0 == "Admin"
        StrCpy $R0 1
    ${Else}
        StrCpy $R0 0
    ${EndIf}
    Exch $R0
FunctionEnd

; The program may be writing firmware to a camera, also when its windows are gone. It is asked to end and
; never killed.
Function ${prefix}requireEndOfProgram
    File "/oname=$PLUGINSDIR\SetupTools.dll" "${TOOLS}"
    System::Call '$PLUGINSDIR\SetupTools.dll::programEnds(i $forAll) i .r0 ? u'
    ${If} $0 <> 1
        !insertmacro stop ${AT_WORK} "${PRODUCT} is still at work. Quit it in the menu of its tray \
            icon, then try again."
    ${EndIf}
FunctionEnd

; The same for a program that has not made the mutex: an older one, or one in another session of
; this user. The file of a running program cannot be opened for writing. The path is on the stack.
Function ${prefix}requireFreeFile
    Exch $R0
    ${If} ${FileExists} "$R0"
        !insertmacro repeated 'FileOpen $R1 "$R0" a'
        ${If} ${Errors}
            !insertmacro stop ${AT_WORK} "${PRODUCT} is in use, perhaps in another session. Quit it, \
                then try again."
        ${EndIf}
        FileClose $R1
    ${EndIf}
    Pop $R0
FunctionEnd
!macroend
!insertmacro commonFunctions ""
!insertmacro commonFunctions "un."

Function .onInit
    Call stopForSystem
    StrCpy $swapped 0
    StrCpy $forAll 0
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/ALLUSERS" $1
    ${IfNot} ${Errors}
        StrCpy $forAll 1
    ${EndIf}

    ReadRegStr $2 HKLM "Software\${PRODUCT}" Package
    ReadRegStr $3 HKLM "${UNINSTALL_KEY}" InstallLocation
    ReadRegStr $4 HKCU "${UNINSTALL_KEY}" InstallLocation
    ; A user who starts an installer that the program has downloaded means the program that is there.
    ${IfNot} ${Silent}
    ${AndIf} $4 == ""
    ${AndIf} $2$3 != ""
        StrCpy $forAll 1
    ${EndIf}
    ${If} $forAll = 1
    ${AndIf} $2 != ""
        !insertmacro stop ${OTHER_PACKAGE} "${PRODUCT} was installed for all users by a package of \
            Windows Installer. Install the new version by such a package, or remove the old one first."
    ${EndIf}

    ${If} $forAll = 1
        Call isElevated
        Pop $1
        ${If} $1 <> 1
            SetErrorLevel ${NOT_ELEVATED}
            ${IfNot} ${Silent}
                ExecShell "runas" "$EXEPATH" "/ALLUSERS"
            ${EndIf}
            Quit
        ${EndIf}
        SetShellVarContext all
    ${EndIf}
    ReadRegStr $old SHCTX "${UNINSTALL_KEY}" InstallLocation
    ${If} $INSTDIR == ""
        StrCpy $INSTDIR $old
    ${EndIf}
    ${If} $INSTDIR == ""
        ${If} $forAll = 1
            StrCpy $INSTDIR "$PROGRAMFILES64\${PRODUCT}"
        ${Else}
            StrCpy $INSTDIR "$LOCALAPPDATA\Programs\${PRODUCT}"
        ${EndIf}
    ${EndIf}
FunctionEnd

; The program gets the rights of the user, not those of an elevated installer.
Function startProgram
    Exec '"$WINDIR\explorer.exe" "$INSTDIR\${PRODUCT}.exe"'
FunctionEnd

; The Start menu and the list of programs. The error flag tells whether something is missing.
Function writeEntries
    ClearErrors
    CreateShortCut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\${PRODUCT}.exe"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "${PRODUCT}"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\${PRODUCT}.exe"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "Sorvanta"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\Uninstall.exe"'
    WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
    ; Its loop over the folder ends with the error flag set.
    Push $R0
    StrCpy $R0 0
    ${If} ${Errors}
        StrCpy $R0 1
    ${EndIf}
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    ClearErrors
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize $0
    ${If} $R0 = 1
        SetErrors
    ${EndIf}
    Pop $R0
FunctionEnd

; Last, because they tell which version is installed and where.
Function writePlace
    ClearErrors
    WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
FunctionEnd

; The version in the folder $0 takes its own files away. The files of others that it leaves there are moved
; to the new version when that has taken its place.
Function removeOld
    ${If} ${FileExists} "$0\Uninstall.exe"
        ; It runs from where it lies, which makes it possible to wait for it, but keeps it from removing
        ; itself.
        ExecWait '"$0\Uninstall.exe" /S /FILES _?=$0' $1
        ${If} $1 <> 0
            ; A file is held open. The next installation tries again.
            Return
        ${EndIf}
        !insertmacro repeated 'Delete "$0\Uninstall.exe"'
    ${EndIf}
    ${If} $0 == "$INSTDIR.old-version"
        System::Call '$PLUGINSDIR\SetupTools.dll::moveRest(w r0, w "$INSTDIR") ? u'
    ${EndIf}
    RMDir "$0"
FunctionEnd

Section
    InitPluginsDir
    ; The folder in which a process runs cannot be renamed, and the program starts a new installer in its
    ; own.
    SetOutPath "$PLUGINSDIR"
    Call requireEndOfProgram
    ${If} $old != ""
        Push "$old\${PRODUCT}.exe"
        Call requireFreeFile
    ${EndIf}
    Push "$INSTDIR\${PRODUCT}.exe"
    Call requireFreeFile

    ; What an installation has left that was cut off.
    ${If} ${FileExists} "$INSTDIR.old-version\*.*"
        ${If} ${FileExists} "$INSTDIR\*.*"
            StrCpy $0 "$INSTDIR.old-version"
            Call removeOld
        ${Else}
            Rename "$INSTDIR.old-version" "$INSTDIR"
        ${EndIf}
    ${EndIf}
    RMDir /r "$INSTDIR.new-version"

    ; Beside the old version, which stays whole until all is written.
    ClearErrors
    SetOutPath "$INSTDIR.new-version"
    File /r "${STAGE}/*"
    WriteUninstaller "$INSTDIR.new-version\Uninstall.exe"
    SetOutPath "$PLUGINSDIR"
    ${If} ${Errors}
    ${OrIfNot} ${FileExists} "$INSTDIR.new-version\Uninstall.exe"
        Abort
    ${EndIf}

    ${If} ${FileExists} "$INSTDIR\*.*"
        !insertmacro repeated 'Rename "$INSTDIR" "$INSTDIR.old-version"'
        ${If} ${Errors}
            Abort
        ${EndIf}
        StrCpy $swapped 1
    ${EndIf}
    !insertmacro repeated 'Rename "$INSTDIR.new-version" "$INSTDIR"'
    ${If} ${Errors}
        Abort
    ${EndIf}
    StrCpy $swapped 2
    Call writeEntries
    ${If} ${Errors}
        Abort
    ${EndIf}
    Call writePlace
    ${If} ${Errors}
        Abort
    ${EndIf}

    ; The new version is complete. Nothing that fails from here on harms it.
    StrCpy $swapped 0
    ${If} ${FileExists} "$INSTDIR.old-version\*.*"
        StrCpy $0 "$INSTDIR.old-version"
        Call removeOld
    ${EndIf}
    ${If} $old != ""
    ${AndIf} $old != $INSTDIR
        StrCpy $0 $old
        Call removeOld
    ${EndIf}
    ; Uninstallers before this one removed them together with the files.
    Call writeEntries
    Call writePlace
SectionEnd

Function .onInstFailed
    SetOutPath "$PLUGINSDIR"
    ${If} $swapped = 2
        !insertmacro repeated 'Rename "$INSTDIR" "$INSTDIR.new-version"'
    ${EndIf}
    ${If} ${FileExists} "$INSTDIR.old-version\*.*"
    ${AndIf} $swapped >= 1
        !insertmacro repeated 'Rename "$INSTDIR.old-version" "$INSTDIR"'
    ${EndIf}
    ${If} $swapped = 2
    ${AndIf} $old == ""
        Delete "$SMPROGRAMS\${PRODUCT}.lnk"
        DeleteRegKey SHCTX "${UNINSTALL_KEY}"
    ${EndIf}
    RMDir /r "$INSTDIR.new-version"
    GetErrorLevel $0
    ${If} $0 <> ${AT_WORK}
        MessageBox MB_OK|MB_ICONEXCLAMATION \
            "${PRODUCT} ${VERSION} could not be written. What was installed before is unchanged." /SD IDOK
        SetErrorLevel ${NOT_WRITTEN}
    ${EndIf}
FunctionEnd

Var removeSettings
Var settingsBox
Var onlyFiles

Function un.onInit
    Call un.stopForSystem
    StrCpy $removeSettings 0
    StrCpy $onlyFiles 0
    StrCpy $forAll 0
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/SETTINGS" $1
    ${IfNot} ${Errors}
        StrCpy $removeSettings 1
    ${EndIf}
    ClearErrors
    ${GetOptions} $0 "/FILES" $1
    ${IfNot} ${Errors}
        StrCpy $onlyFiles 1
        Return
    ${EndIf}

    ReadRegStr $1 HKLM "${UNINSTALL_KEY}" InstallLocation
    ${If} $1 == $INSTDIR
        StrCpy $forAll 1
        Call un.isElevated
        Pop $1
        ${If} $1 <> 1
            SetErrorLevel ${NOT_ELEVATED}
            ${IfNot} ${Silent}
                ExecShell "runas" "$INSTDIR\Uninstall.exe"
            ${EndIf}
            Quit
        ${EndIf}
        SetShellVarContext all
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

; The data of this user: nobody else's can be found without their profile. The log and the downloaded
; packages are of no use without the program.
Function un.removeData
    SetShellVarContext current
    ${If} $removeSettings = 1
        RMDir /r "$LOCALAPPDATA\${PRODUCT}"
        RMDir /r "$APPDATA\${PRODUCT}"
        Return
    ${EndIf}
    Delete "$LOCALAPPDATA\${PRODUCT}\${PRODUCT}.log"
    Delete "$LOCALAPPDATA\${PRODUCT}\${PRODUCT}.log.1"
    Delete "$LOCALAPPDATA\${PRODUCT}\marviktools.lock"
    FindFirst $0 $1 "$LOCALAPPDATA\${PRODUCT}\cache\*"
    ${DoUntil} $1 == ""
        ${If} $1 != "device.ini"
            ; Fails for the folders "." and "..".
            Delete "$LOCALAPPDATA\${PRODUCT}\cache\$1"
        ${EndIf}
        FindNext $0 $1
    ${Loop}
    FindClose $0
    RMDir "$LOCALAPPDATA\${PRODUCT}\cache"
    RMDir "$LOCALAPPDATA\${PRODUCT}"
FunctionEnd

Section Uninstall
    InitPluginsDir
    SetOutPath "$PLUGINSDIR"
    ${If} $onlyFiles <> 1
        Call un.requireEndOfProgram
        Push "$INSTDIR\${PRODUCT}.exe"
        Call un.requireFreeFile
    ${EndIf}
    ; Only what was installed goes: the folder may have been chosen, with other things in it.
    !insertmacro repeated '!insertmacro deleteFiles'
    ${If} ${Errors}
        ; The uninstaller and its entry stay, so that it can be tried again.
        !insertmacro stop ${NOT_WRITTEN} "A file of ${PRODUCT} cannot be removed, because another \
            program has opened it. Close that program, then try again."
    ${EndIf}
    !insertmacro removeFolders
    ; A copy of the uninstaller runs; the one in the folder has started it and is about to end. Run in
    ; its own place by an installer, it is left to that.
    ${If} $EXEDIR != $INSTDIR
        !insertmacro repeated 'Delete "$INSTDIR\Uninstall.exe"'
    ${EndIf}
    RMDir "$INSTDIR"
    ${If} $onlyFiles <> 1
        Delete "$SMPROGRAMS\${PRODUCT}.lnk"
        Call un.removeData
        ; Last, because this entry says that the program is installed.
        ${If} $forAll = 1
            SetShellVarContext all
        ${EndIf}
        DeleteRegKey SHCTX "${UNINSTALL_KEY}"
    ${EndIf}
SectionEnd
