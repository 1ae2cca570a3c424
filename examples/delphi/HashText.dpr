// Prints the digests of a text by every hash algorithm, late-bound.
//
//   dcc32 HashText.dpr        (dcc64 with the 64-bit DLL)
//   HashText TEXT
//
// Needs the registered DLL of the program's bitness. The tests compile it with Free Pascal, ppcx64 -Mdelphiunicode.
program HashText;

{$APPTYPE CONSOLE}

uses
  SysUtils, ActiveX, ComObj;

const
  // The type library's numbers, whose names are not available to late binding.
  latchkeyHashMD5 = 1;
  latchkeyHashSHA1 = 4;
  latchkeyErrorRunTime = 1;
  Algorithms: array[latchkeyHashMD5..latchkeyHashSHA1] of string = ('MD5', 'MD4', 'MD2', 'SHA-1');

// Prints the error record: no operation raises an error by itself.
function Failure(const Main: OleVariant): string;
var
  Description: string;
begin
  if Integer(Main.ErrorType) = latchkeyErrorRunTime then
    Description := Main.RTErrorDescription
  else
    Description := Main.AppErrorDescription;
  Result := Format('failed at location %d: %s', [Integer(Main.ErrorLocationID), Description]);
end;

// Objects are released when they go out of scope: in a separate procedure, so before CoUninitialize.
procedure PrintDigests(const Text: string);
var
  Main, Api: OleVariant;
  Digest: string;
  Number: Integer;
begin
  Main := CreateOleObject('Latchkey.clsMain');      // first: makes the error record of this thread
  Api := CreateOleObject('Latchkey.clsCryptoAPI');
  for Number := Low(Algorithms) to High(Algorithms) do
  begin
    Digest := Api.CreateHash(Text, Number, True);
    if Digest = '' then
      Digest := Failure(Main);
    Writeln(Algorithms[Number]:6, ' ', Digest);
  end;
end;

begin
  if ParamCount <> 1 then
  begin
    Writeln('usage: HashText TEXT');
    Halt(2);
  end;
  CoInitialize(nil);
  try
    PrintDigests(ParamStr(1));
  finally
    CoUninitialize;
  end;
end.
