; The installer. To be made with
;   makensis -DVERSION=0.1.0 -DFILES=<folder of what is installed> -DLIST=<list of it> -DICON=<vexa.ico>
;            -DOUT=<installer> [-DWINDOW] vexa.nsi
; LIST holds the lines "!insertmacro RemoveFile <file>" and "!insertmacro RemoveFolder <folder>", so
; that the uninstaller takes away what was installed and nothing else.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
ManifestDPIAware true

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE  ; /AllUsers, /CurrentUser
!define MULTIUSER_INSTALLMODE_DEFAULT_CURRENTUSER
!define MULTIUSER_INSTALLMODE_FUNCTION ChooseFolder
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\VEXA"
!define SOUNDING "VEXA.Sounding"  ; the kind of file in the registry

Name "VEXA"
OutFile "${OUT}"
BrandingText "VEXA ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "VEXA"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installs VEXA, upper-air soundings"
VIAddVersionKey CompanyName "The VEXA developers"
VIAddVersionKey LegalCopyright "Copyright 2026 The VEXA developers, MIT license"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_COMPONENTSPAGE_SMALLDESC  ; below a list that is as wide as the window
!insertmacro MUI_PAGE_LICENSE "${FILES}/LICENSE.txt"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Var GivenFolder  ; of /D=, which goes before all others

; The user's own data is in %LOCALAPPDATA%\vexa, so the program must not be.
Function ChooseFolder
  ${If} $GivenFolder != ""
    StrCpy $INSTDIR $GivenFolder
  ${ElseIf} $MultiUser.InstallMode == "AllUsers"
    StrCpy $INSTDIR "$PROGRAMFILES64\VEXA"
  ${Else}
    StrCpy $INSTDIR "$LOCALAPPDATA\Programs\VEXA"
  ${EndIf}
FunctionEnd

; Files in use cannot be replaced; so it is said before any is.
!macro StopIfRunning program
  ${If} ${FileExists} "$INSTDIR\${program}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${program}" a
    ${If} ${Errors}
      MessageBox MB_ICONSTOP|MB_OK "$INSTDIR\${program} is in use. Close it and start again." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

Section "VEXA, the program" SecProgram
  SectionIn RO
  !insertmacro StopIfRunning vexa.exe
  !insertmacro StopIfRunning vexa-cli.exe
  SetOutPath "$INSTDIR"
  File /r "${FILES}/*"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "VEXA"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "The VEXA developers"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\vexa-cli.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize $0
SectionEnd

!ifdef WINDOW
Section "Start menu entries" SecMenu
  SetOutPath "$INSTDIR"
  CreateDirectory "$SMPROGRAMS\VEXA"
  CreateShortcut "$SMPROGRAMS\VEXA\VEXA.lnk" "$INSTDIR\vexa.exe"
  CreateShortcut "$SMPROGRAMS\VEXA\Uninstall VEXA.lnk" "$INSTDIR\uninstall.exe" "/$MultiUser.InstallMode"
SectionEnd

; Cameras have files of this name, too: another program keeps them, and VEXA is among those to choose.
Section "Open .raw soundings with VEXA" SecFiles
  WriteRegStr SHCTX "Software\Classes\${SOUNDING}" "" "Upper-air sounding"
  WriteRegStr SHCTX "Software\Classes\${SOUNDING}\DefaultIcon" "" "$INSTDIR\vexa.exe,0"
  WriteRegStr SHCTX "Software\Classes\${SOUNDING}\shell\open\command" "" '"$INSTDIR\vexa.exe" "%1"'
  WriteRegStr SHCTX "Software\Classes\.raw\OpenWithProgids" "${SOUNDING}" ""
  ReadRegStr $0 SHCTX "Software\Classes\.raw" ""
  ${If} $0 == ""
    WriteRegStr SHCTX "Software\Classes\.raw" "" "${SOUNDING}"
  ${EndIf}
  ${RefreshShellIcons}
SectionEnd
!endif

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SecProgram} "The program, its command line vexa-cli and its list of stations."
  !ifdef WINDOW
  !insertmacro MUI_DESCRIPTION_TEXT ${SecMenu} "VEXA and its uninstaller in the start menu."
  !insertmacro MUI_DESCRIPTION_TEXT ${SecFiles} "A double click on a .raw file opens it, unless another program has these files already; then VEXA is among those to choose."
  !endif
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
  SetRegView 64
  StrCpy $GivenFolder $INSTDIR
  !insertmacro MULTIUSER_INIT
  !ifdef WINDOW
  ${If} ${Silent}
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/Associate" $1
    ${If} ${Errors}
      SectionSetFlags ${SecFiles} 0  ; nobody was asked
    ${EndIf}
  ${EndIf}
  !endif
FunctionEnd

Function un.onInit
  SetRegView 64
  !insertmacro MULTIUSER_UNINIT
FunctionEnd

!macro RemoveFile file
  Delete "$INSTDIR\${file}"
!macroend
!macro RemoveFolder folder
  RMDir "$INSTDIR\${folder}"
!macroend

Section "Uninstall"
  !insertmacro StopIfRunning vexa.exe
  !insertmacro StopIfRunning vexa-cli.exe
  !include "${LIST}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"  ; only when nothing of the user's is in it
  Delete "$SMPROGRAMS\VEXA\VEXA.lnk"
  Delete "$SMPROGRAMS\VEXA\Uninstall VEXA.lnk"
  RMDir "$SMPROGRAMS\VEXA"
  ReadRegStr $0 SHCTX "Software\Classes\.raw" ""
  ${If} $0 == "${SOUNDING}"
    DeleteRegValue SHCTX "Software\Classes\.raw" ""
  ${EndIf}
  DeleteRegValue SHCTX "Software\Classes\.raw\OpenWithProgids" "${SOUNDING}"
  DeleteRegKey /ifempty SHCTX "Software\Classes\.raw\OpenWithProgids"
  DeleteRegKey /ifnosubkeys /ifnovalues SHCTX "Software\Classes\.raw"
  DeleteRegKey SHCTX "Software\Classes\${SOUNDING}"
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
SectionEnd
