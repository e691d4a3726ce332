#include "NyFolderWords.h"

#include <QtCore/QStringList>

const NyFolderWords &NyFolderWords::instance()
{
    static const NyFolderWords words;
    return words;
}

/** @p phrases are separated by commas. A phrase that comes in several calls has all their roles. */
void NyFolderWords::add(const char16_t *phrases, Roles roles)
{
    const QStringList list
        = QString::fromUtf16(phrases).normalized(QString::NormalizationForm_C).toCaseFolded().split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &entry : list) {
        const QString phrase = entry.simplified();
        m_roles[phrase] |= roles;
        const int length = int(phrase.count(QLatin1Char(' '))) + 1;
        if (length > 1) {
            int &longest = m_phraseLengths[phrase.section(QLatin1Char(' '), 0, 0)];
            longest = qMax(longest, length);
        }
    }
}

NyFolderWords::NyFolderWords()
{
    // Words about pictures and order, de, en, fr, it, es, nl, pl, sv, and some neighbours.
    add(u"foto,fotos,bild,bilder,aufnahme,aufnahmen,fotografie,fotografien,fotoalbum,fotoalben,album,alben,fotoarchiv,bildarchiv,archiv,"
        u"fotosammlung,bildersammlung,sammlung,fotoordner,bilderordner,digitalfotos,digitalbilder,ordner,alle,alles,meine,mein,unsere,"
        u"eigene,"
        u"eigene bilder,eigene fotos,meine bilder,meine fotos,jahr,jahre,jahrgang,jahresordner,monat,monate,datum,nach datum,schuljahr,"
        u"mediathek,fotomediathek,gemischt,gemischtes,rest,alte,alter,altes,alt,neue,neuer,neues,neu,wichtig,kopie,kopie von",
        Filler);
    add(u"photo,photos,picture,pictures,pic,pics,image,images,photograph,photographs,photography,albums,archive,archives,photo "
        u"archive,all,my,our,"
        u"my pictures,my photos,library,photo library,photos library,pictures "
        u"library,collection,folder,year,years,yearly,month,months,monthly,"
        u"date,by date,by year,school year,mixed,old,copy,copy of,new,media,snaps,shots",
        Filler);
    add(u"images,photographies,mes,mes photos,mes images,nos "
        u"photos,toutes,tous,année,annee,années,annees,an,mois,archives,dossier,photothèque,"
        u"phototheque,année scolaire,vieilles,ancien,anciennes,copie,nouveau,nouvelles,nouvelle,clichés",
        Filler);
    add(u"immagini,immagine,fotografia,fotografie,le mie foto,mie foto,nostre foto,tutte,tutto,anno,mese,archivio,raccolta,cartella,anno "
        u"scolastico,"
        u"vecchie,vecchio,nuove,nuovo,nuova,copia",
        Filler);
    add(u"imágenes,imagenes,imagen,fotografías,fotografias,mis fotos,mis imágenes,nuestras "
        u"fotos,todas,todo,todos,año,ano,mes,archivo,colección,"
        u"carpeta,curso escolar,viejas,antiguas,nuevas,nuevo,nueva,álbum,álbumes,copia de",
        Filler);
    add(u"foto's,foto s,afbeelding,afbeeldingen,plaatjes,beelden,mijn foto's,mijn foto s,onze foto's,mijn "
        u"afbeeldingen,jaar,maand,archief,map,verzameling,"
        u"schooljaar,oude,oud,nieuwe,nieuw,kopie,zdjęcia,zdjecia,zdjęcie,obrazy,obraz,fotki,moje zdjęcia,nasze "
        u"zdjęcia,rok,roku,miesiąc,archiwum,stare,nowe,"
        u"kopia,bilder,bild,foton,mina bilder,mina "
        u"foton,år,månad,arkiv,gamla,nya,billeder,bilete,valokuvat,kuvat,fotografije,fotky,képek,imagens,"
        u"fényképek,фото,фотографии,фотки,картинки,год,года,г,снимки,знимки,φωτογραφίες,fotoğraflar,resimler",
        Filler);
    add(u"dias,diapositive,diapositives,diapositivas,diapositieven,dia's,dia "
        u"s,slides,negative,negatives,negativos,negativi,négatifs,negatieven,farbdias,"
        u"diasammlung,kleinbilddias",
        Filler);
    add(u"写真,画像,年,照片,图片,相片,相册,사진,년,月,日,월,일,年度", Filler);

    add(u"von,vom,der,die,das,dem,den,des,und,im,in,am,an,aus,zu,zum,zur,bei,mit,für,auf,ab,uhr,ca,ein,eine,beim,ins,from,of,the,and,with,"
        u"at,on,by,for,"
        u"an,as,de,du,des,la,le,les,et,aux,au,avec,chez,en,dans,pour,sur,un,une,del,della,dello,delle,dei,degli,dal,dalla,di,da,il,lo,gli,"
        u"con,per,nel,"
        u"al,alla,ed,uno,una,el,los,las,y,para,por,van,het,een,op,te,uit,bij,met,voor,naar,na,ze,od,dla,och,från,av,på,med,til,fra,og,att,"
        u"st,nd,rd,th,er,"
        u"do,to,bis,tot,till,til,etc,usw,nr,no,num",
        Connector);

    // Telephones, cameras, cards.
    add(u"iphone,iphones,ipad,ipod,handy,handys,handyfotos,handybilder,handykamera,mobiltelefon,mobil,smartphone,smartphones,phone,mobile,"
        u"cell phone,cellphone,"
        u"mobile phone,phone "
        u"photos,tablet,téléphone,telephone,portable,cellulare,telefonino,telefono,teléfono,móvil,movil,celular,mobiel,mobieltje,telefoon,"
        u"gsm,telefon,"
        u"komórka,komorka,mobiltelefon,mobilen,galaxy,samsung,pixel,google "
        u"pixel,huawei,xiaomi,redmi,oneplus,motorola,nokia,fairphone,htc,sony,xperia,"
        u"sony xperia,kamera,kameras,camera,cameras,cam,digicam,digitalkamera,digital "
        u"camera,webcam,dslr,spiegelreflex,spiegelreflexkamera,kompaktkamera,appareil,"
        u"appareil photo,caméra,fotocamera,macchina "
        u"fotografica,cámara,câmera,fototoestel,fotocamera,aparat,kamerabilder,systemkamera,canon,nikon,lumix,"
        u"olympus,fuji,fujifilm,fujifinepix,pentax,casio,kodak,ricoh,leica,konica,minolta,sigma,hasselblad,gopro,dji,drohne,drohnenfotos,"
        u"drone,dron,actioncam,"
        u"action cam,wildkamera,sd,sd karte,sdkarte,sd card,sdcard,speicherkarte,memory card,memorycard,carte sd,carte mémoire,scheda "
        u"sd,tarjeta sd,"
        u"tarjeta,geheugenkaart,karta,minneskort,usb,usb stick,stick,cf card",
        Device);
    add(u"eos,mark,mk,ii,iii,iv,powershot,ixus,coolpix,cybershot,cyber,shot,alpha,finepix,exilim,optio,ultra,plus,pro,max,mini,note,edge,"
        u"series,se,xs,"
        u"xr,air,mavic,hero,osmo,rebel,kiss,os,android,google",
        ModelWord);

    // Where programs put what they fetch.
    add(u"dcim,camera roll,cameraroll,camera uploads,camera upload,kamera uploads,kamera upload,kameraupload,open camera,opencamera,eigene "
        u"aufnahmen,"
        u"filmrolle,pellicule,rullino,rullino foto,carrete,filmrol,rolka z aparatu,kamerarulle,saved pictures,gespeicherte "
        u"bilder,import,imports,importe,"
        u"importiert,importierte,importierte bilder,importierte fotos,imported,imported photos,imports "
        u"photos,importation,importations,importées,importazione,"
        u"importazioni,importate,importación,importaciones,importadas,importado,geïmporteerd,importeren,importowane,importerade,neuer "
        u"ordner,neue ordner,neuer,"
        u"new folder,nouveau dossier,nuova cartella,nueva carpeta,nieuwe map,nowy folder,ny mapp,ny mappe,nova pasta,untitled "
        u"folder,untitled,"
        u"unbenannter ordner,unbenannt,unbenanntes album,ohne titel,sans titre,dossier sans titre,senza titolo,cartella senza titolo,sin "
        u"título,carpeta sin título,"
        u"naamloze map,naamloos,bez tytułu,namnlös mapp,takeout,google takeout,google photos,google fotos,google foto,google,icloud,icloud "
        u"photos,icloud fotos,"
        u"icloud drive,icloud foto,onedrive,dropbox,nextcloud,owncloud,google drive,drive,amazon photos,synology photos,moments,mobile "
        u"uploads,auto upload,"
        u"autoupload,instant upload,instantupload,uploads,upload,hochgeladen,photo stream,photostream,mein fotostream,my photo "
        u"stream,fotostream,apple,"
        u"masters,unsortiert,unsortierte,unsortierte fotos,noch sortieren,zu sortieren,sortieren,noch zu "
        u"sortieren,einsortieren,unsorted,to sort,sort,"
        u"sort me,à trier,a trier,trier,non triées,en vrac,vrac,da ordinare,da sistemare,por ordenar,sin ordenar,sin clasificar,te "
        u"sorteren,ongesorteerd,"
        u"do posortowania,nieposortowane,osorterat,osorterade,eingang,eingangskorb,inbox,neueste,latest,recent,recents,zuletzt,zuletzt "
        u"hinzugefügt,"
        u"recently added,backup,backups,sicherung,sicherungen,datensicherung,mobilebackup,mobile "
        u"backup,sauvegarde,sauvegardes,salvataggio,copia di sicurezza,copia de seguridad,back up,"
        u"reservekopie,kopia zapasowa,säkerhetskopia,temp,tmp,temporär,temporary,diverses,diverse,diverse "
        u"fotos,sonstiges,sonstige,verschiedenes,misc,"
        u"miscellaneous,various,other,others,divers,diverses "
        u"photos,autre,autres,varie,vario,altro,altre,varios,varias,otros,otras,diversen,overig,overige,"
        u"varia,różne,rozne,inne,diverse,övrigt,blandat,data,daten,export photos,desktop,schreibtisch,picasa,iphoto,iphoto "
        u"library,aperture,aperture library,shotwell,"
        u"digikam,f spot,f-spot,lightroom,capture "
        u"one,airdrop,transfer,transfert,übertragung,snapshots,momente,recovered,wiederhergestellt,gerettet,raw import",
        Import);

    // Programs, messengers and documents.
    add(u"whatsapp,whats app,whatsapp images,whatsapp bilder,whatsapp business,whatsapp documents,telegram,telegram images,telegram "
        u"documents,telegram desktop,signal,threema,viber,viber images,"
        u"skype,wechat,weixin,micromsg,kakaotalk,snapchat,instagram,insta,facebook,messenger,facebook messenger,fb,tiktok,tik "
        u"tok,twitter,tweets,pinterest,reddit,discord,"
        u"tumblr,flickr,vkontakte,slack,teams,zoom,bumble,tinder,snapseed,vsco,vscocam,picsart,facetune,canva,prisma "
        u"app,photogrid,beautyplus,retrica,"
        u"boomerang,camscanner,downloads,download,heruntergeladen,heruntergeladene "
        u"bilder,downloaded,téléchargements,telechargements,téléchargement,"
        u"descargas,descargado,download,scaricati,gedownload,gedownloade,pobrane,hämtade "
        u"filer,hämtade,hämtat,nedladdat,nedladdningar,transferências,"
        u"bluetooth,wallpaper,wallpapers,hintergrundbilder,hintergründe,bildschirmhintergründe,fonds d écran,fond d écran,sfondi,fondos de "
        u"pantalla,achtergronden,"
        u"tapety,bakgrundsbilder,icons,icon,logos,logo,avatar,avatare,avatars,profilbilder,profilbild,profile pictures,profile "
        u"photos,memes,meme,gif,gifs,giphy,sticker,"
        u"stickers,emojis,clipart,cliparts,screenshots,screenshot,bildschirmfotos,screen "
        u"recordings,bildschirmaufnahmen,scan,scans,gescannt,eingescannt,"
        u"gescannte "
        u"dokumente,scanned,scanner,numérisations,scansioni,escaneos,escaneados,skany,dokumente,dokument,documents,document,documenti,"
        u"documentos,"
        u"documenten,dokumenty,rechnungen,belege,quittungen,invoices,receipts,factures,fatture,facturas,facturen,kassenbons,ebay,"
        u"kleinanzeigen,vinted,"
        u"vorlagen,templates,sent,gesendet,received,empfangen,private,status,statuses,kontaktbilder,contacts,kontakte,websites,webseiten,"
        u"internet",
        Source);

    // States of work on photos; below an event they are parts of it.
    add(u"raw,raws,rohdaten,nef,nefs,cr2,cr3,arw,dng,dngs,orf,rw2,raf,jpg,jpgs,jpeg,jpegs,heic,heif,tif,tiff,tiffs,png,pngs,psd,xmp,pdf,"
        u"export,exports,exporte,"
        u"exportiert,exportierte,exported,exportées,exportees,exportate,exportadas,geëxporteerd,eksport,exporterade,bearbeitet,bearbeitete,"
        u"bearbeitete bilder,"
        u"bearbeitete "
        u"fotos,bearbeitung,bearbeitungen,nachbearbeitet,unbearbeitet,unbearbeitete,edited,edit,edits,unedited,editing,processed,"
        u"processing,retouched,"
        u"retouch,retusche,retuschiert,retouches,retouchées,retouchees,modifiées,modifiees,modifiés,traitées,modificate,ritoccate,"
        u"elaborate,editadas,retocadas,"
        u"procesadas,bewerkt,bewerkte,bewerkingen,edytowane,obrobione,redigerade,redigerat,auswahl,auswahlen,vorauswahl,endauswahl,"
        u"ausgewählt,ausgewählte,selection,"
        u"selections,selected,selects,select,picks,picked,keepers,sélection,selezione,selezionate,scelte,scelta,selección,seleccion,"
        u"seleccionadas,selectie,geselecteerd,"
        u"wybrane,wybór,urval,utvalda,favoriten,favorit,lieblingsbilder,lieblingsfotos,favorites,favourites,favorite,favoris,favoritas,"
        u"favoritos,preferiti,preferite,favorieten,ulubione,"
        u"favoriter,best,beste,besten,die besten,beste bilder,best of,bestof,the best,highlight,highlights,top,meilleures,les "
        u"meilleures,migliori,le migliori,mejores,las mejores,najlepsze,bästa,"
        u"jahresrückblick,rückblick,recap,year in "
        u"review,original,originale,originals,originalbilder,originaldateien,originaux,originali,originales,originelen,oryginały,oryginaly,"
        u"original files,druck,"
        u"drucken,zum drucken,ausdruck,ausdrucke,print,prints,printing,to print,impression,impressions,tirages,stampa,stampe,da "
        u"stampare,imprimir,impresión,"
        u"afdrukken,druk,wydruk,utskrift,web,webversion,klein,kleine,verkleinert,small,resized,resize,smaller,petites,réduites,piccole,"
        u"ridotte,pequeñas,reducidas,"
        u"verkleind,małe,små,groß,gross,große,large,full,fullsize,full size,full res,fullres,hires,high res,highres,lowres,low "
        u"res,hd,uhd,4k,originalgröße,medium,"
        u"video,videos,filme,movies,movie,clips,clip,vidéo,vidéos,filmati,vídeos,vídeo,filmpjes,filmy,wideo,filmer,panorama,panoramas,"
        u"panoramen,panos,pano,"
        u"hdr,zeitlupe,slow motion,slowmo,serienaufnahmen,serienbilder,burst,bursts,live photos,diashow,slideshow,slide "
        u"show,diaporama,presentazione,"
        u"presentación,diavoorstelling,collage,collagen,collages,sw,s w,schwarzweiß,schwarz weiß,schwarzweiss,bw,b w,b&w,black and "
        u"white,black white,noir et blanc,bianco e nero,"
        u"blanco y negro,zwart "
        u"wit,farbe,color,colour,couleur,colore,final,finals,fertig,fertige,done,ready,ausschuss,aussortiert,aussortierte,reject,rejects,"
        u"rejected,"
        u"verworfen,abgelehnt,rebut,scarti,scartate,descartadas,descartes,afgekeurd,odrzucone,gelöscht,löschen,zu löschen,deleted,to "
        u"delete,supprimées,"
        u"doppelt,doppelte,duplikate,duplicate,duplicates,doublons,doppioni,duplicati,duplicados,dubbele,duplikaty,dubbletter,unscharf,"
        u"blurry,photoshop,gimp,darktable,rawtherapee,sidecar,preview,previews,vorschau,"
        u"output,out,fotobuch,photobook,photo book,livre photo,fotolibro,fotoboek,fotoksiążka,für fotobuch,fotobuch auswahl",
        Technical);
    add(u"video,videos,panorama,panoramas,best of,highlights,bestof,favoriten,favorites", Filler);

    // Work of months and years.
    add(u"renovierung,renovierungen,renovieren,renovation,renovations,hausrenovierung,wohnungsrenovierung,badrenovierung,küchenrenovierung,"
        u"sanierung,"
        u"altbausanierung,badsanierung,haussanierung,dachsanierung,modernisierung,hausbau,hausbautagebuch,umbau,umbauten,umbauarbeiten,"
        u"hausumbau,küchenumbau,dachausbau,kellerausbau,neubau,anbau,baustelle,bautagebuch,"
        u"baufortschritt,baudokumentation,rohbau,gartenbau,gartenumbau,stammbaum,ahnenforschung,familienforschung,genealogie,genealogy,"
        u"family tree,family history,"
        u"portfolio,portfolios,projekt,projekte,projekten,project,projects,langzeitprojekt,fotoprojekt,fotoprojekte,projekt 365,project "
        u"365,projet 365,365 project,365 tage projekt,zeitraffer,timelapse,"
        u"time lapse,restaurierung,restauration,restoration,oldtimer restaurierung,house building,house build,building "
        u"site,construction,construction site,home improvement,remodel,"
        u"remodeling,remodelling,refurbishment,diy,rénovation,rénovations,renovations,travaux,chantier,construction maison,arbre "
        u"généalogique,généalogie,projet,"
        u"projets,ristrutturazione,ristrutturazioni,cantiere,lavori casa,albero "
        u"genealogico,genealogia,progetto,progetti,reforma,reformas,obra,obras,"
        u"construcción casa,construcción,árbol "
        u"genealógico,genealogía,proyecto,proyectos,verbouwing,verbouwingen,renovatie,huisbouw,nieuwbouw,bouw,stamboom,"
        u"genealogie,project huis,projecten,remont,remonty,budowa,budowa domu,drzewo "
        u"genealogiczne,genealogia,projekty,renovering,husbygge,ombyggnad,släktträd,"
        u"släktforskning,projekt hus,versicherung,hausrat,hausratversicherung,inventar,inventory,inventaire,bewerbungsmappe",
        Project);

    add(u"tag,day,jour,journée,giorno,día,dia,dag,dzień,dzien,nap,den,päivä", DayWord);
    add(u"teil,part,partie,parte,deel,część,czesc,abschnitt,kapitel,chapter,chapitre,capitolo,capítulo,hoofdstuk,etappe,etappen,stage,"
        u"étape,etape,tappa,etapa,"
        u"etapp,etap,serie,series,série,set,gruppe,group,groupe,gruppo,grupo,groep,runde,round,block,station,film,rolle,roll,cd,dvd,disc,"
        u"disk,woche,week,semaine,"
        u"settimana,semana,tydzień,vecka",
        PartWord);
    add(u"morgen,morgens,früh,vormittag,vormittags,mittag,mittags,nachmittag,nachmittags,abend,abends,nacht,nachts,morning,noon,afternoon,"
        u"evening,night,matin,"
        u"matinée,midi,après "
        u"midi,soir,soirée,nuit,mattina,mattino,pomeriggio,sera,serata,notte,mañana,mediodía,tarde,noche,ochtend,middag,avond,rano,"
        u"popołudnie,wieczór,noc,förmiddag,eftermiddag,kväll,natt,anreise,abreise,hinreise,rückreise,hinfahrt,rückfahrt,hinflug,rückflug,"
        u"arrival,departure,arrivée,départ,"
        u"partenza,arrivo,llegada,salida,aankomst,vertrek,heenreis,terugreis,unterwegs,on the road,en route",
        TimeOfDay);

    add(u"familie,familien,familienfotos,familienbilder,familienalbum,family,family "
        u"photos,families,famille,famiglia,familia,gezin,rodzina,familj,familjen,freunde,"
        u"friends,amis,amici,amigos,vrienden,przyjaciele,vänner,privat,privates,private "
        u"photos,personal,persönlich,personnel,personale,privé,prywatne,kinder,kids,children,enfants,bambini,"
        u"niños,kinderen,dzieci,barn,arbeit,work,job,beruf,beruflich,firma,travail,lavoro,trabajo,werk,praca,hobby,hobbys,hobbies,urlaube,"
        u"reisen,"
        u"reisebilder,reisefotos,urlaubsfotos,urlaubsbilder,ferienfotos,ausflüge,wanderungen,touren,städtereisen,vacations,trips,travels,"
        u"travel,travel photos,voyages,viaggi,viajes,"
        u"reizen,vakanties,uitstapjes,podróże,wycieczki,resor,semestrar,events,event,ereignisse,anlässe,veranstaltungen,feste,feiern,"
        u"feierlichkeiten,partys,parties,"
        u"fêtes,feste di "
        u"famiglia,fiestas,feesten,imprezy,fester,geburtstage,birthdays,anniversaires,compleanni,cumpleaños,verjaardagen,urodziny,"
        u"födelsedagar,hochzeiten,weddings,mariages,matrimoni,bodas,bruiloften,śluby,konzerte,concerts,concerti,conciertos,tiere,animals,"
        u"haustiere,pets,"
        u"natur,nature,landschaft,landschaften,landscapes,blumen,flowers,makro,macro,alltag,everyday,daily,leute,people,personen,länder,"
        u"countries,orte,places,themen,topics",
        Category);

    add(u"img,dsc,dscn,dscf,dsci,dscim,pxl,mvi,vid,mov,cimg,sam,gopr,gh,gx,hpim,pict,imag,imgp,igp,kif,rimg,sany,stp,mg,p,dji,sdc,rscn,"
        u"dmc,wp,hni",
        CounterPrefix);

    add(u"oud en nieuw,oud nieuw,oud & nieuw,new year,new years,new year s,new year s eve,new years eve,neues jahr,das neue jahr,año "
        u"nuevo,ano nuevo,anno nuovo,ano novo,"
        u"nouvelle année,nouvelle annee,bonne année,new york,new zealand,new orleans,new jersey,new delhi,new england,new forest,neue "
        u"welt,alte welt,alte meister,altes land,"
        u"neues land,noche vieja,nouvelle orléans,nouvelle calédonie,nuova zelanda,nueva york,nueva zelanda,nuova york,all inclusive,all "
        u"saints,"
        u"rock im park,rock am ring,rock in rio,tag und nacht,day and night",
        Title);
    add(u"top,nr,no,num,nummer,number,numéro,numero,número", NumberWord);
}
