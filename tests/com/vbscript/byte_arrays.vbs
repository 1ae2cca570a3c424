' Byte arrays from a script: variables are passed by reference, expressions by value.
On Error Resume Next
Const SUBSCRIPT = "9 Latchkey.clsCryptoAPI: Subscript out of range"
Const MISMATCH = "13 Latchkey.clsCryptoAPI: Type mismatch"
Const NO_ERROR = "0 : "
Dim main, api, bytes, copy, nothingYet, text

Function ValueOf(variable)
    ValueOf = variable
End Function

Set main = CreateObject("Latchkey.clsMain")
Set api = CreateObject("Latchkey.clsCryptoAPI")

bytes = api.StringToByteArray("secret")
api.Password = bytes
Check "password by reference", LastError, NO_ERROR
Check "password stored", api.ByteArrayToString(api.Password), "secret"
Check "erased variable is an array still", VarType(bytes), vbArray + vbByte
text = api.ByteArrayToString(bytes)
Check "erased variable has no elements", LastError, SUBSCRIPT
api.InputData = bytes
Check "nor as input", LastError, SUBSCRIPT

bytes = api.StringToByteArray("secret")
api.Password = ValueOf(bytes)
Check "password by value", LastError, NO_ERROR
Check "variable keeps its value", api.ByteArrayToString(bytes), "secret"

bytes = api.StringToByteArray("another")
copy = bytes
api.Password = bytes
Check "a copy stays", api.ByteArrayToString(copy), "another"

bytes = api.StringToByteArray("")
api.Password = bytes
Check "too short for a password", LastError, NO_ERROR
Check "short variable stays", api.ByteArrayToString(bytes), ""
Check "short variable is whole", LastError, NO_ERROR

bytes = api.StringToByteArray("data")
api.InputData = bytes
Check "input leaves the variable alone", api.ByteArrayToString(bytes), "data"

text = api.ByteArrayToString(nothingYet)
Check "Empty variable", LastError, SUBSCRIPT
api.Password = nothingYet
Check "Empty password", LastError, SUBSCRIPT
text = api.ByteArrayToString(Array(65, 66, 0))
Check "array of variants", LastError, MISMATCH
copy = Array(65, 66, 0)
api.Password = copy
Check "variable with an array of variants", LastError, MISMATCH
Check "it stays", UBound(copy), 2
text = api.ByteArrayToString("abc")
Check "text", LastError, MISMATCH
api.InputData = 5
Check "number", LastError, MISMATCH
text = api.ByteArrayToString(Null)
Check "Null", LastError, MISMATCH
text = api.ByteArrayToString(api.OutputData)
Check "no output yet", LastError, SUBSCRIPT
Finish 21
