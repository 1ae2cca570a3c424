' Stands before each test script: a script host has no include of its own.
Option Explicit
Dim checksPassed, checksFailed
checksPassed = 0
checksFailed = 0

Sub Check(name, got, wanted)
    If got = wanted Then
        checksPassed = checksPassed + 1
    Else
        checksFailed = checksFailed + 1
        WScript.Echo "FAILED " & name & ": got [" & got & "], wanted [" & wanted & "]"
    End If
End Sub

' What the last statement left in Err, as one text, and Err cleared.
Function LastError()
    LastError = Err.Number & " " & Err.Source & ": " & Err.Description
    Err.Clear
End Function

' A script that breaks off never gets here, and the number tells of checks that were passed over.
Sub Finish(checks)
    If checksFailed = 0 And checksPassed = checks Then
        WScript.Echo "all checks passed"
    Else
        WScript.Echo "FAILED: " & checksPassed & " of " & checks & " checks passed"
    End If
End Sub
