; The instruments of "skav".
;
; Every note goes to one of the buses (drums, bass, music, lead, voice, effects) and, by its own
; measure, to the echo and the room. The desk (the instruments from 900 on, always on) ducks the
; music under the kick, adds echo and room and writes the mix. Mastering is a later step, so the
; mix may exceed 1.0.
;
; Note fields: p2 start (s), p3 length (s), p4 level (0..1), p5 pitch (MIDI number, fractions
; allowed) unless the instrument says otherwise.

sr     = 44100
ksmps  = 16
nchnls = 2
0dbfs  = 1

seed 20260

giSine  ftgen 1, 0, 16384, 10, 1
; Inharmonic partials of struck metal, after measured cymbal modes: used by hats and crashes.
giMetal ftgen 2, 0, -8, -2, 1, 1.4471, 1.6170, 1.9265, 2.5028, 2.6637, 3.11, 3.87

gaKick  init 0
gaDrumL init 0
gaDrumR init 0
gaBass  init 0
gaMusL  init 0
gaMusR  init 0
gaLeadL init 0
gaLeadR init 0
gaVoxL  init 0
gaVoxR  init 0
gaFxL   init 0
gaFxR   init 0
gaRevL  init 0
gaRevR  init 0
gaDlyL  init 0
gaDlyR  init 0
gkDuck  init 0
gkHush  init 0

; Equal-power panning: position 0 is left, 1 is right.
opcode Pan, aa, ak
  aIn, kPos xin
  xout aIn * cos(kPos * $M_PI_2), aIn * sin(kPos * $M_PI_2)
endop

opcode ToDrums, 0, aai
  aL, aR, iRoom xin
  gaDrumL += aL
  gaDrumR += aR
  gaRevL  += aL * iRoom
  gaRevR  += aR * iRoom
endop

opcode ToMusic, 0, aaii
  aL, aR, iRoom, iEcho xin
  gaMusL += aL
  gaMusR += aR
  gaRevL += aL * iRoom
  gaRevR += aR * iRoom
  gaDlyL += aL * iEcho
  gaDlyR += aR * iEcho
endop

opcode ToLead, 0, aaii
  aL, aR, iRoom, iEcho xin
  gaLeadL += aL
  gaLeadR += aR
  gaRevL += aL * iRoom
  gaRevR += aR * iRoom
  gaDlyL += aL * iEcho
  gaDlyR += aR * iEcho
endop

opcode ToFx, 0, aai
  aL, aR, iRoom xin
  gaFxL  += aL
  gaFxR  += aR
  gaRevL += aL * iRoom
  gaRevR += aR * iRoom
endop

; ---------------------------------------------------------------- drums

; Bass drum. p5: final frequency (Hz). p6: drive (1 clean .. 5 hard).
instr Kick
  kFast  expseg 1, 0.024, 0.0025, 1, 0.0025
  kSlow  expseg 1, 0.23, 0.0067, 1, 0.0067
  kFreq  = p5 + p5 * 2.6 * kSlow + 480 * kFast
  kAmp   transeg 1, 0.07, -1, 0.8, p3 - 0.07, -3.5, 0
  aBody  oscili kAmp, kFreq, giSine, 0.1
  aClick noise 0.5, 0
  aClick butterhp aClick, 2200
  kClick transeg 1, 0.008, -3, 0
  gaKick += (tanh(aBody * p6) / tanh(p6) + aClick * kClick * 0.7) * p4
endin

; Pulls down everything but the drums. p4: depth (0..1).
instr Duck
  kEnv  transeg 1, 0.05, 0, 1, p3 - 0.05, -1.2, 0
  gkDuck max gkDuck, kEnv * p4
endin

; Turns the band down before an accent, until the note ends. p4: depth (0..1).
instr Hush
  kEnv   linseg 0, p3 * 0.45, 1, p3 * 0.55, 1
  gkHush max gkHush, kEnv * p4
endin

; Snare. p5: body frequency. p6: length of the wires (s). p7: room.
instr Snare
  kPitch expseg 1.9, 0.012, 1.12, 0.2, 1, 1, 1
  kBody  transeg 1, 0.13, -4, 0
  a1     oscili kBody, p5 * kPitch, giSine, 0.2
  a2     oscili kBody * 0.6, p5 * 1.78 * kPitch, giSine, 0.2
  kWire  transeg 1, p6, -3.2, 0
  aN1    noise kWire, 0
  aN2    noise kWire, 0
  aN1    butterhp aN1, 900
  aN2    butterhp aN2, 900
  aM1    butterbp aN1, 4200, 6500
  aM2    butterbp aN2, 4200, 6500
  aTone  = tanh((a1 + a2) * 1.6) * 0.40
  aL     = (aTone + tanh(aM1 * 1.8) * 0.95) * p4
  aR     = (aTone + tanh(aM2 * 1.8) * 0.95) * p4
  ToDrums aL, aR, p7
endin

; Hand clap: four short bursts, then a tail. p5: room.
instr Clap
  kEnv   transeg 1, 0.009, -3, 0.05, 0, 0, 0.9, 0.009, -3, 0.05, 0, 0, 0.85, 0.010, -3, 0.05, 0, 0, 1, 0.16, -4, 0
  aN1    noise kEnv, 0
  aN2    noise kEnv, 0
  aL     butterbp aN1, 1350, 1300
  aR     butterbp aN2, 1500, 1500
  aHL    butterhp aN1, 5000
  aHR    butterhp aN2, 5000
  aL     = tanh((aL * 1.6 + aHL * 0.5)) * p4
  aR     = tanh((aR * 1.6 + aHR * 0.5)) * p4
  ToDrums aL, aR, p5
endin

; Struck metal for hats and crashes: eight squares at inharmonic ratios and some noise.
opcode Metal, a, i
  iBase xin
  aSum = 0
  iN   = 0
  loop:
    iRatio tab_i iN, giMetal
    aOne   vco2 0.16, iBase * iRatio, 10
    aSum   += aOne
    iN     += 1
    if iN < 8 igoto loop
  xout aSum
endop

; Hi-hat. p5: length (s). p6: pan.
instr Hat
  a1   vco2 0.2, 421, 10
  a2   vco2 0.2, 607.7, 10
  a3   vco2 0.2, 679.1, 10
  a4   vco2 0.2, 809.0, 10
  a5   vco2 0.2, 1051.2, 10
  a6   vco2 0.2, 1118.6, 10
  aN   noise 0.5, 0
  aRing = (a1 + a2) * (a3 + a4) * 3 + a5 * a6 * 3 + aN
  aRing butterhp aRing, 7200
  aRing butterhp aRing, 6400
  kEnv transeg 1, p5, -4, 0
  aL, aR Pan aRing * kEnv * p4, k(p6)
  ToDrums aL, aR, 0.03
endin

; Shaker: a soft grain of noise. p5: pan.
instr Shaker
  kEnv linseg 0, 0.018, 1, 0.05, 0
  aN   noise kEnv * p4, 0
  aN   butterbp aN, 7800, 5000
  aL, aR Pan aN, k(p5)
  ToDrums aL, aR, 0.06
endin

; Rim, clock tick, block: a short hit resonator. p5: frequency. p6: pan. p7: room.
instr Tick
  aN   noise 1, 0
  kEnv transeg 1, 0.004, -2, 0
  aHit = aN * kEnv
  aA   reson aHit, p5, p5 * 0.035, 2
  aB   reson aHit, p5 * 1.53, p5 * 0.05, 2
  aOut = tanh((aA + aB * 0.6) * 1.7 + aHit * 0.4) * p4
  aL, aR Pan aOut, k(p6)
  ToDrums aL, aR, p7
endin

; Tom. p5: frequency. p6: pan.
instr Tom
  kF   expseg 1.7, 0.05, 1.08, 0.3, 1, 1, 1
  kEnv transeg 1, p3, -4, 0
  a1   oscili kEnv, p5 * kF, giSine, 0.1
  aN   noise 0.4, 0
  kN   transeg 1, 0.03, -3, 0
  aN   butterbp aN, p5 * 9, p5 * 8
  aOut = tanh(a1 * 1.8 + aN * kN) * p4
  aL, aR Pan aOut, k(p6)
  ToDrums aL, aR, 0.12
endin

; Crash cymbal. p3 is its whole length. p5: pan.
instr Crash
  a1   Metal 295
  a2   Metal 311
  aN1  noise 0.8, 0
  aN2  noise 0.8, 0
  kEnv transeg 1, 0.12, -2, 0.6, p3 - 0.12, -3.5, 0
  kHp  linseg 4800, p3, 7200
  aL   butterhp a1 + aN1 * 0.6, kHp
  aR   butterhp a2 + aN2 * 0.6, kHp
  aL   = aL * kEnv * p4 * (1.15 - p5 * 0.3)
  aR   = aR * kEnv * p4 * (0.85 + p5 * 0.3)
  ToDrums aL, aR, 0.1
endin

; ---------------------------------------------------------------- effects

; The blow that opens a scene: a falling sub-bass, a burst of noise (debris), a struck metal tone (girder).
; p5: pitch of the girder. p6: how long the debris hangs (s). p7: how much sub (0..1).
instr Blow
  kF    expseg 150, 0.09, 62, 0.9, 34, 10, 34
  kSub  transeg 1, p3, -3, 0
  aSub  oscili kSub, kF, giSine, 0.15
  aSub  = tanh(aSub * 2.2) * 0.75 * p7
  kNs   transeg 1, p6, -4, 0
  kLp   expseg 15000, p6, 500, 10, 500
  aN1   noise kNs, 0
  aN2   noise kNs, 0
  aN1   butterlp aN1, kLp
  aN2   butterlp aN2, kLp
  aN1   butterhp aN1, 140
  aN2   butterhp aN2, 140
  iF    = cpsmidinn(p5)
  kIdx  transeg 7, 0.5, -4, 0.4, 3, 0, 0.4
  kMet  transeg 1, min(p3, 1.6), -5, 0
  aMod  oscili kIdx * iF * 1.414, iF * 1.414, giSine
  aCarL oscili kMet, iF + aMod, giSine
  aCarR oscili kMet, iF * 1.006 - aMod, giSine
  aL    = (aSub + aN1 * 0.62 + aCarL * 0.22) * p4
  aR    = (aSub + aN2 * 0.62 + aCarR * 0.22) * p4
  ToFx aL, aR, 0.28
endin

; Rising (or falling) wind: noise through a moving band. p5, p6: band from, to (Hz).
; p7: curve of the swell (positive starts slowly). p8: level at the end against p4.
instr Wind
  kF    expseg p5, p3, p6
  kEnv  transeg 0.001, p3 * 0.985, p7, p8, p3 * 0.015, 0, 0
  aN1   noise kEnv, 0
  aN2   noise kEnv, 0
  aL    butterbp aN1, kF, kF * 0.55
  aR    butterbp aN2, kF * 1.06, kF * 0.55
  aLH   butterhp aN1, kF * 2.2
  aRH   butterhp aN2, kF * 2.2
  aL    = (aL * 2.2 + aLH * 0.12) * p4
  aR    = (aR * 2.2 + aRH * 0.12) * p4
  ToFx aL, aR, 0.2
endin

; Rising tone, gated in sixteenths: three saws that climb from p5 to p6 (MIDI).
instr Climb
  kP    linseg p5, p3, p6
  kEnv  transeg 0.02, p3 * 0.99, 2.2, 1, p3 * 0.01, 0, 0
  a1    vco2 0.3, cpsmidinn(kP)
  a2    vco2 0.3, cpsmidinn(kP + 0.13)
  a3    vco2 0.3, cpsmidinn(kP - 0.12)
  kGate lfo 0.5, 8, 3
  kGate portk kGate + 0.5, 0.004
  kGate = 0.35 + kGate * 0.65
  kCut  expseg 400, p3, 7500
  aL    zdf_ladder (a1 + a2) * kGate, kCut, 4
  aR    zdf_ladder (a1 + a3) * kGate, kCut, 4
  aL    = aL * kEnv * p4
  aR    = aR * kEnv * p4
  ToFx aL, aR, 0.25
endin

; A turntable that gets up to speed (or stops): p5, p6: speed from, to; 1 is the rated speed.
instr Platter
  kSpd  linseg p5, p3, p6
  a1    vco2 0.35, 55 * kSpd + 8
  a2    vco2 0.25, 220 * kSpd + 12
  a3    vco2 0.2, 329.6 * kSpd + 12
  aN    noise 0.35, 0
  aN    butterbp aN, 300 + 3200 * kSpd, 300 + 1800 * kSpd
  kEnv  linseg 0.6, p3 * 0.92, 1, p3 * 0.08, 0
  aOut  butterlp a1 + a2 + a3 + aN * 2, 300 + 6000 * kSpd
  aOut  = aOut * kEnv * p4
  ToFx aOut, aOut, 0.15
endin

; ---------------------------------------------------------------- basses

; Two saws over a sub sine through a ladder. p6: pitch it slides from. p7: cutoff (Hz).
; p8: envelope's reach (Hz). p9: resonance (0.5..12).
instr Bass
  kP    linseg p6, 0.05, p5, 1, p5
  kF    = cpsmidinn(kP)
  a1    vco2 0.42, kF
  a2    vco2 0.42, kF * 1.006, 2, 0.4
  aS    oscili 0.62, kF, giSine
  kEnv  transeg 1, 0.16, -3, 0.28, 2, -1, 0.1
  kCut  = (p7 + p8 * kEnv * (0.4 + p4 * 0.6)) * 1.7
  aF    zdf_ladder a1 + a2, kCut, p9
  aF    = tanh(aF * 2.2)                        ; the growl
  aF    butterhp aF, 95
  kAmp  linsegr 0, 0.003, 1, p3 - 0.006, 0.85, 0.02, 0
  gaBass += tanh((aF * 0.9 + aS * 0.9) * 1.2) * kAmp * p4 * 0.8
endin

; Acid line. p6: pitch it slides from. p7: cutoff. p8: accent (0 or 1). p9: resonance.
instr Acid
  kP    linseg p6, 0.055, p5, 1, p5
  aS    vco2 0.7, cpsmidinn(kP)
  kEnv  transeg 1, 0.12 + 0.1 * p8, -4, 0
  kCut  = p7 * (1 + kEnv * (2.2 + 2.4 * p8))
  aF    zdf_ladder aS, min(kCut, 9000), p9
  aF    = tanh(aF * (2.4 + p8 * 1.4))
  kAmp  linsegr 0, 0.003, 1, p3 - 0.005, 0.7, 0.015, 0
  aF    butterhp aF, 70
  aOut  = aF * kAmp * p4 * 1.9
  aL, aR Pan aOut, k(0.5)
  ToLead aL, aR, 0.05, 0.1
endin

; ---------------------------------------------------------------- keys and strings

; Pad: six saws per note, wide. p6, p7: cutoff from, to. p8: attack (s). p9: room.
instr Pad
  iF    = cpsmidinn(p5)
  kV1   lfo 0.0025, 4.1
  kV2   lfo 0.0025, 4.7
  a1    vco2 0.2, iF * (0.9945 + kV1)
  a2    vco2 0.2, iF * (1.0052 - kV2), 0, 0.5, 0.33
  a3    vco2 0.2, iF * (1.0013 + kV2), 0, 0.5, 0.7
  a4    vco2 0.2, iF * (0.9981 - kV1), 0, 0.5, 0.2
  a5    vco2 0.16, iF * (2.003 + kV1), 0, 0.5, 0.5
  a6    vco2 0.16, iF * (0.503 - kV2), 2, 0.3
  kC    expseg p6, p3, p7, 1, p7
  aL    = a1 + a3 + a5 * 0.6 + a6 * 0.5
  aR    = a2 + a4 + a5 * 0.6 + a6 * 0.5
  aL    zdf_2pole aL, kC * 1.5, 0.8
  aR    zdf_2pole aR, kC * 1.6, 0.8
  kAmp  linsegr 0, p8, 1, 1, 1, 0.25, 0
  aL    butterhp aL * kAmp * p4, 150
  aR    butterhp aR * kAmp * p4, 150
  ToMusic aL, aR, p9, 0
endin

; Plucked synth. p6: brightness (Hz). p7: pan. p8: echo. p9: decay (s).
instr Pluck
  iF    = cpsmidinn(p5)
  a1    vco2 0.4, iF
  a2    vco2 0.3, iF * 1.004, 2, 0.35
  kEnv  transeg 1, p9, -4, 0
  kCut  = 250 + p6 * 1.4 * kEnv * kEnv
  aF    zdf_2pole a1 + a2, kCut, 1.5
  kAmp  linsegr 0, 0.002, 1, 0.03, 0
  aF    butterhp aF * kEnv * kAmp * p4, 160
  aL, aR Pan aF, k(p7)
  ToMusic aL, aR, 0.12, p8
endin

; Chord stab: seven detuned saws per note. p6: cutoff. p7: decay (s). p8: room. p9: echo.
instr Stab
  iF    = cpsmidinn(p5)
  a1    vco2 0.2, iF
  a2    vco2 0.2, iF * 1.0071, 0, 0.5, 0.3
  a3    vco2 0.2, iF * 0.9933, 0, 0.5, 0.6
  a4    vco2 0.2, iF * 1.0126, 0, 0.5, 0.8
  a5    vco2 0.2, iF * 0.9876, 0, 0.5, 0.1
  a6    vco2 0.14, iF * 2.0041, 0, 0.5, 0.45
  a7    vco2 0.14, iF * 1.9967, 0, 0.5, 0.9
  kEnv  transeg 1, p7, -3, 0
  kC    = 250 + p6 * (0.25 + 0.75 * kEnv)
  aL    zdf_2pole a1 + a2 + a5 + a6, kC, 0.8
  aR    zdf_2pole a1 + a3 + a4 + a7, kC, 0.8
  kAmp  linsegr 0, 0.002, 1, 0.04, 0
  aL    butterhp aL * kEnv * kAmp * p4, 140
  aR    butterhp aR * kEnv * kAmp * p4, 140
  ToMusic aL, aR, p8, p9
endin

; Lead voice. p6: pitch it slides from. p7: slide (s). p8: brightness (Hz). p9: vibrato (cents).
; p10: echo.
instr Lead
  kP    transeg p6, max(p7, 0.002), -2, p5, 1, 0, p5
  kDep  linseg 0, 0.18, 0, 0.35, 1, 1, 1
  kVib  lfo kDep * p9 / 100, 5.4
  kRate randi 0.03, 3.1, 0.37
  kF    = cpsmidinn(kP + kVib + kRate)
  kPw   lfo 0.16, 0.7
  a1    vco2 0.34, kF
  a2    vco2 0.3, kF * 1.0058, 2, 0.5 + kPw
  a3    vco2 0.22, kF * 0.9946
  a4    vco2 0.16, kF * 0.5, 2, 0.5
  kEnv  transeg 0.55, 0.05, 0, 1, 0.5, -2, 0.62, 2, -1, 0.5
  kCut  = 500 + p8 * 1.5 * kEnv * (0.55 + 0.45 * p4)
  aL    zdf_2pole a1 + a2 + a4, kCut, 1.6
  aR    zdf_2pole a1 + a3 + a4, kCut * 1.04, 1.6
  kAmp  linsegr 0, 0.008, 1, 0.2, 0.86, 1, 0.86, 0.07, 0
  aL    = tanh(aL * 1.7) * kAmp * p4 * 0.62
  aR    = tanh(aR * 1.7) * kAmp * p4 * 0.62
  aL    butterhp aL, 130
  aR    butterhp aR, 130
  ToLead aL, aR, 0.16, p10
endin

; Home-computer sound chip: one pulse wave that switches between the notes of a chord fifty times a second.
; p5, p6, p7: the chord (equal pitches make a single tone). p8: pulse width. p9: pan. p10: echo.
instr Chip
  kStep phasor 50 / 3
  kN    = int(kStep * 3)
  kP    = (kN == 0 ? p5 : (kN == 1 ? p6 : p7))
  kPw   lfo 0.12, 1.3
  a1    vco2 0.5, cpsmidinn(kP), 2, p8 + kPw
  kAmp  linsegr 0, 0.002, 1, 0.09, 0.62, p3, 0.4, 0.012, 0
  a1    butterlp a1 * kAmp * p4, 12000
  a1    butterhp a1, 150
  aL, aR Pan a1, k(p9)
  ToMusic aL, aR, 0.05, p10
endin

; Bell or glass, two-operator FM. p6: modulator ratio. p7: brightness. p8: pan. p9: echo.
instr Bell
  iF    = cpsmidinn(p5)
  kIdx  transeg p7, p3 * 0.6, -4, 0.1, 9, 0, 0.1
  kEnv  transeg 1, p3, -4.5, 0
  aM    oscili kIdx * iF, iF * p6, giSine
  a1    oscili kEnv, iF + aM, giSine
  a2    oscili kEnv * 0.5, iF * 1.0027 + aM * 0.5, giSine
  kAt   linseg 0, 0.0015, 1, 1, 1
  aOut  = (a1 + a2) * kAt * p4 * 0.5
  aL, aR Pan aOut, k(p8)
  ToMusic aL, aR, 0.3, p9
endin

; An upright piano, slightly out of tune: two strings per note, with the stretched partials of stiff strings.
; p6: how far the strings are apart (cents). p7: pan. p8: room.
opcode String, a, iii
  iF, iVel, iPart xin
  iStiff = sqrt(1 + 0.00032 * iPart * iPart)
  iFreq  = iF * iPart * iStiff
  aRest  = 0
  if iPart < 14 && iFreq * (iPart + 1) / iPart < 15000 then
    aRest String iF, iVel, iPart + 1
  endif
  iLvl  = (0.25 + 0.75 * abs(sin($M_PI * iPart * 0.127))) / (iPart ^ (1.45 - 0.6 * iVel))
  kEnv  expseg 1, 3.2 / (0.5 + iPart * 0.5) / (iF / 220) ^ 0.4, 0.05, 4, 0.001
  aOne  oscili kEnv * iLvl, iFreq, giSine, 0.25 * (iPart % 3)
  xout aOne + aRest
endop

instr Piano
  iF    = cpsmidinn(p5)
  a1    String iF * cent(-p6 / 2), p4, 1
  a2    String iF * cent(p6 / 2), p4, 1
  aN    noise 0.4, 0
  aN    butterbp aN, 1900, 1800
  kN    transeg 1, 0.02, -3, 0
  kAmp  linsegr 0, 0.0015, 1, 1, 1, 0.12, 0
  aL    = (a1 + a2 * 0.5 + aN * kN * 0.6) * kAmp * p4 * 0.36
  aR    = (a2 + a1 * 0.5 + aN * kN * 0.6) * kAmp * p4 * 0.36
  ToMusic aL * (1.3 - 0.6 * p7), aR * (0.7 + 0.6 * p7), p8, 0.04
endin

; ---------------------------------------------------------------- voices

; Plays a sung or spoken part. p5: file. p6: room. p7: echo. p8: high-pass (Hz).
instr Singer
  aL, aR diskin2 p5, 1
  aL    butterhp aL, p8
  aR    butterhp aR, p8
  aAirL butterhp aL, 2600                       ; the spoken voice is dull above 3 kHz
  aAirR butterhp aR, 2600
  aL    = (aL + aAirL * 1.6) * p4
  aR    = (aR + aAirR * 1.6) * p4
  gaVoxL += aL
  gaVoxR += aR
  gaRevL += aL * p6
  gaRevR += aR * p6
  gaDlyL += aL * p7
  gaDlyR += aR * p7
endin

; ---------------------------------------------------------------- the desk

; Echo that swings between the sides in dotted eighths and loses its treble on the way.
instr 900
  aFbR  init 0
  aInL  butterhp gaDlyL, 260
  aInR  butterhp gaDlyR, 260
  aL    delay aInL + aInR * 0.4 + aFbR * 0.46, 0.375
  aL    butterlp aL, 6500
  aR    delay aL * 0.82 + aInR * 0.3, 0.375
  aR    butterlp aR, 5800
  aFbR  = aR
  kDk   = 1 - gkDuck * 0.5
  gaMusL += aL * kDk
  gaMusR += aR * kDk
  gaRevL += aL * 0.12
  gaRevR += aR * 0.12
endin

; Room.
instr 901
  aL    butterhp gaRevL, 240
  aR    butterhp gaRevR, 240
  aL    delay aL, 0.018
  aR    delay aR, 0.023
  aL, aR reverbsc aL, aR, 0.84, 8200, sr, 0.6, 1
  kDk   = 1 - gkDuck * 0.45
  gaFxL += aL * 0.8 * kDk
  gaFxR += aR * 0.8 * kDk
endin

; Mix. The bus levels are the balance of the whole piece.
instr 999
  kBass = 1 - gkDuck * 0.85
  kMus  = 1 - gkDuck * 0.6
  kLead = 1 - gkDuck * 0.28
  kVox  = 1 - gkDuck * 0.12
  kAll  = 1 - gkHush
  aDrumL = tanh(gaDrumL * 1.3) * 0.95
  aDrumR = tanh(gaDrumR * 1.3) * 0.95
  aMono = gaKick * 0.50 + gaBass * kBass * 0.72
  aL    = aMono + aDrumL + gaMusL * kMus * 1.1 + gaLeadL * kLead * 0.6 + gaVoxL * kVox * 1.75 + gaFxL * 0.8
  aR    = aMono + aDrumR + gaMusR * kMus * 1.1 + gaLeadR * kLead * 0.6 + gaVoxR * kVox * 1.75 + gaFxR * 0.8
  outs aL * kAll * 0.5, aR * kAll * 0.5
  clear gaKick, gaDrumL, gaDrumR, gaBass, gaMusL, gaMusR, gaLeadL, gaLeadR, gaVoxL, gaVoxR
  clear gaFxL, gaFxR, gaRevL, gaRevR, gaDlyL, gaDlyR
  gkDuck = 0
  gkHush = 0
endin
