' Before this: the constants and the routines of examples/vbscript/encrypt_file.vbs.
Dim main, api, files, line, stored, plain
Set main = CreateObject("Latchkey.clsMain")
Set api = CreateObject("Latchkey.clsCryptoAPI")
api.EnhancedProvider = True
UsePassword "a secret"

Function ReadStored(digits)
    ReadStored = Decrypt(api.ConvertStringFromHex(digits))
End Function

Function StoredUnmarked(text)
    api.InputData = api.StringToByteArray(text)
    If Not api.Encrypt(latchkeyHashMD5, latchkeyCipher3DES) Then GiveUp
    StoredUnmarked = api.ConvertStringToHex(api.ByteArrayToString(api.OutputData))
End Function

For Each line In TextLines()
    plain = TextOfHex(line)
    Check "text " & line, ReadStored(api.ConvertStringToHex(Encrypt(plain))), plain
Next
Check "digit passed", Len(StoredUnmarked("digits passed 138" & END_MARK & "0")) < 64, True   ' ends in 20, which is lost
Check "no mark", ReadStored(StoredUnmarked("attack at dawn")), "attack at dawn"
Check "half a mark", ReadStored(StoredUnmarked("attack ~lkend~")), "attack ~lkend~"
Check "earlier mark", ReadStored(StoredUnmarked("attack at dawn  end|")), "attack at dawn  "

api.CreateSaltValue -1
ShowErrorRecord
